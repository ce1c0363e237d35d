// The spatial hash: it finds all points within the tolerance, compared with a search through all
// distances, wherever the faces of cells lie and however coarse the coordinates are; and it finds
// few other points.
//
// The points are placed so that they meet faces of cells of any size up to 0.01 and any origin.
#include "beamshell/point_grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace korvex {
namespace {

using Points = std::vector<Vector3>;
using Indices = std::vector<std::size_t>;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Largest = std::numeric_limits<double>::max();

// Expects that a search at each of `wanted` finds all `points` within 0.001 of it. Returns how many
// these are; a point far from all others finds itself.
std::size_t ExpectAllNearFound(const Points& points, const Points& wanted) {
  PointGrid grid;
  BuildPointGrid(points, grid);
  std::size_t near = 0;
  Indices found;
  for (const Vector3& p : wanted) {
    found.clear();
    FindNear(grid, p, found);
    std::sort(found.begin(), found.end());
    for (std::size_t i = 0; i < points.size(); ++i) {
      const double x = points[i][0] - p[0], y = points[i][1] - p[1], z = points[i][2] - p[2];
      if (std::abs(x) > 0.001) continue;  // rules out most points without a square root
      if (!(std::sqrt(x * x + y * y + z * z) <= 0.001)) continue;
      ++near;
      if (std::binary_search(found.begin(), found.end(), i)) continue;
      ADD_FAILURE() << "not found from " << p[0] << ' ' << p[1] << ' ' << p[2] << ": " << x << ' '
                    << y << ' ' << z << " away";
      return near;
    }
  }
  return near;
}

// `count` equal steps from `origin` along the direction.
Points MakeRow(const Vector3& origin, const Vector3& step, int count) {
  Points points;
  for (int i = 0; i < count; ++i) {
    points.push_back({origin[0] + i * step[0], origin[1] + i * step[1], origin[2] + i * step[2]});
  }
  return points;
}

// Rows of points 0.0001 apart, 0.03 long: neighbours up to the tenth lie within the tolerance, or,
// by rounding, just beyond it, and every face is crossed with every distance to it.
TEST(PointGrid, FindsNearPointsAcrossFaces) {
  constexpr double s = 0.0001;
  for (const double x : {0.0, -0.015, 7.0, -1234.5678, 1e6}) {
    for (const Vector3& step : {Vector3{s, 0, 0}, {0, s, 0}, {0, 0, s}, {-s, 0, 0}}) {
      const Points row = MakeRow({x, x, x}, step, 300);
      EXPECT_GT(ExpectAllNearFound(row, row), 300U * 19U) << x;
    }
  }
}

// A cubic lattice of 0.00057, wider than 0.01: neighbours across a diagonal are 0.00057 sqrt(3) =
// 0.00099 apart, so that at an edge or corner of a cell all cells around it count. The 16^3 points
// inside have at least 26 neighbours.
TEST(PointGrid, FindsNearPointsAcrossEdgesAndCorners) {
  for (const double origin : {-0.005, 1e6}) {
    Points lattice;
    for (int i = 0; i < 18 * 18 * 18; ++i) {
      lattice.push_back({origin + i % 18 * 0.00057, origin + i / 18 % 18 * 0.00057,
                         origin + i / 18 / 18 * 0.00057});
    }
    EXPECT_GT(ExpectAllNearFound(lattice, lattice), 16U * 16U * 16U * 26U) << origin;
  }
}

// Searches at points that are not in the grid.
TEST(PointGrid, FindsWhatIsNearAnyPoint) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> place(-0.01, 0.01);
  Points points, wanted;
  for (int i = 0; i < 3000; ++i) points.push_back({place(random), place(random), place(random)});
  for (int i = 0; i < 1000; ++i) wanted.push_back({place(random), place(random), place(random)});
  // A sphere of 0.001 takes 4.19e-9 / 8e-6 of the cube: 1.57 of the 3,000 points.
  EXPECT_GT(ExpectAllNearFound(points, wanted), 1200U);
}

// Beyond 2^43 doubles are more than 0.001 apart, and from 2^53 cells on a cell's number has no last
// digit. Searches at neighbouring doubles of all magnitudes: on either side of each power of two,
// and of each power of two times 0.01.
TEST(PointGrid, FindsNearPointsAmongCoarseCoordinates) {
  for (int exponent = 10; exponent < 1023; exponent += exponent < 80 ? 1 : 53) {
    for (const double size : {std::ldexp(1.0, exponent), std::ldexp(0.01, exponent),
                              std::ldexp(-1.0, exponent), std::ldexp(-0.01, exponent)}) {
      double x = size;
      for (int i = 0; i < 8; ++i) x = std::nextafter(x, -Infinity);
      Points points;
      for (int i = 0; i < 17; ++i) {
        for (const double y : {x, size, 0.5}) {
          points.insert(points.end(), {{x, y, 0.25}, {y, x, x}, {0.25, y, x}});
        }
        x = std::nextafter(x, Infinity);
      }
      EXPECT_GE(ExpectAllNearFound(points, points), points.size()) << size;
    }
  }
}

TEST(PointGrid, FindsPointsAtTheLargestDoubles) {
  Points points;
  for (const double x : {Largest, -Largest, 1e300, -1e300, 2e306, -2e306, 0.0}) {
    for (const double y : {Largest, 0.0, -1e300}) points.push_back({x, y, x});
  }
  EXPECT_EQ(ExpectAllNearFound(points, points), points.size());
}

// 0, -0 and the smallest numbers beside them are one place.
TEST(PointGrid, SignOfZeroDoesNotCount) {
  const double tiny = std::numeric_limits<double>::denorm_min();
  Points points;
  for (const double x : {0.0, -0.0, tiny, -tiny}) {
    for (const double y : {0.0, -0.0, tiny, -tiny}) points.push_back({x, y, -x});
  }
  EXPECT_EQ(ExpectAllNearFound(points, points), points.size() * points.size());
}

TEST(PointGrid, PointsThatAreNotFiniteHaveNoPlace) {
  EXPECT_TRUE(IsFinite({0.0, -Largest, Largest}));
  for (const double x : {std::nan(""), Infinity, -Infinity}) {
    EXPECT_FALSE(IsFinite({x, 0.0, 0.0}));
    EXPECT_FALSE(IsFinite({0.0, x, 0.0}));
    EXPECT_FALSE(IsFinite({0.0, 0.0, x}));
  }
}

TEST(PointGrid, HoldsEveryPointWithAPlaceOnce) {
  const double nan = std::nan("");
  PointGrid grid;
  grid.first = {3, 4};  // left over from another use
  grid.points = {9, 9, 9};
  BuildPointGrid({{1, 2, 3}, {nan, 2, 3}, {1, 2, 3}, {1, Infinity, 3}, {50, 60, 70}, {1, 2, nan}},
                 grid);
  Indices held = grid.points;
  std::sort(held.begin(), held.end());
  EXPECT_EQ(held, (Indices{0, 2, 4}));
  EXPECT_TRUE(std::is_sorted(grid.first.begin(), grid.first.end()));
  EXPECT_EQ(grid.first.front(), 0U);
  EXPECT_EQ(grid.first.back(), 3U);
}

TEST(PointGrid, SearchAppends) {
  PointGrid grid;
  BuildPointGrid({{1, 2, 3}}, grid);
  Indices found{5};
  FindNear(grid, {1, 2, 3}, found);
  ASSERT_GE(found.size(), 2U);
  EXPECT_EQ(found[0], 5U);
  EXPECT_EQ(found[1], 0U);
}

TEST(PointGrid, NothingIsFoundInAnEmptyGrid) {
  const Points withoutPlace(5, Vector3{std::nan(""), 0.0, 0.0});
  for (const Points& points : {Points{}, withoutPlace}) {
    PointGrid grid;
    BuildPointGrid(points, grid);
    Indices found;
    FindNear(grid, {0, 0, 0}, found);
    EXPECT_TRUE(found.empty());
  }
}

// How many indices a search at each of the points finds on average.
double FoundOnAverage(const Points& points) {
  PointGrid grid;
  BuildPointGrid(points, grid);
  Indices found;
  for (const Vector3& p : points) FindNear(grid, p, found);
  return static_cast<double>(found.size()) / static_cast<double>(points.size());
}

// The grid has at least as many buckets as points, so that a bucket holds on average at most one
// besides the wanted one. Round coordinates, which are common in models, are not on the faces of
// cells: the search looks into one bucket, not eight. So two are found, within a hundredth.
TEST(PointGrid, FindsLittleElseAmongRoundCoordinates) {
  for (const double spacing : {0.01, 0.05, 0.1, 0.5, 1.0, 25.0, 1000.0}) {
    Points points;
    for (int i = 0; i < 25 * 25 * 25; ++i) {
      points.push_back({i % 25 * spacing, i / 25 % 25 * spacing, i / 625 * spacing});
    }
    EXPECT_LT(FoundOnAverage(points), 2.1) << spacing;
  }
}

// A box of 0.003 meets two cells of 0.01 in 3 of 10 places, in each direction: 1.3^3 = 2.2 buckets,
// and 3.2 points found. Negative coordinates and large ones are no different.
TEST(PointGrid, FindsLittleElseAnywhere) {
  std::mt19937 random(2);
  for (const double size : {10.0, 1e4, 1e9}) {
    std::uniform_real_distribution<double> place(-size, size);
    Points points;
    for (int i = 0; i < 16384; ++i) points.push_back({place(random), place(random), place(random)});
    EXPECT_LT(FoundOnAverage(points), 3.4) << size;
  }
}

}  // namespace
}  // namespace korvex
