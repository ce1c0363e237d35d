// What touches an element, and which boxes can be left out of the search.
#include "check/element_region.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/good_models.h"

namespace kvx::test {
namespace {

using korvex::Vector3;

ElementRegion RegionOf(const std::vector<Vector3>& corners, double tolerance = 0.01) {
  std::array<Vector3, 4> four{};
  std::copy(corners.begin(), corners.end(), four.begin());
  ElementRegion region;
  MakeRegion(four, corners.size(), tolerance, region);
  return region;
}

constexpr int Nothing = -2;

// The edge that the point touches, -1 inside, Nothing.
int TouchOf(const ElementRegion& region, const Vector3& point) {
  const Touch touch = FindTouch(region, point);
  return touch.touches ? touch.edge : Nothing;
}

TEST(FindTouch, OfABeamBetweenItsEnds) {
  const ElementRegion beam = RegionOf({{0, 0, 0}, {3, 0, 4}});
  EXPECT_EQ(TouchOf(beam, {1.5, 0, 2}), 0);
  EXPECT_EQ(TouchOf(beam, {1.5, 0.009, 2}), 0);
  EXPECT_EQ(TouchOf(beam, {1.5, 0.011, 2}), Nothing);
  EXPECT_EQ(TouchOf(beam, {0, 0, 0}), Nothing);          // an end
  EXPECT_EQ(TouchOf(beam, {0.005, 0, 0.005}), Nothing);  // as good as one
  EXPECT_EQ(TouchOf(beam, {3.3, 0, 4.4}), Nothing);      // behind it
}

TEST(FindTouch, OfATriangleInsideAndOnItsEdges) {
  const ElementRegion triangle = RegionOf({{0, 0, 1}, {4, 0, 1}, {0, 4, 1}});
  EXPECT_EQ(TouchOf(triangle, {1, 1, 1}), -1);
  EXPECT_EQ(TouchOf(triangle, {1, 1, 1.009}), -1);
  EXPECT_EQ(TouchOf(triangle, {1, 1, 1.011}), Nothing);
  EXPECT_EQ(TouchOf(triangle, {2, 0, 1}), 0);
  EXPECT_EQ(TouchOf(triangle, {2, 2, 1}), 1);
  EXPECT_EQ(TouchOf(triangle, {0, 2, 1}), 2);
  EXPECT_EQ(TouchOf(triangle, {2, -0.009, 1}), 0);
  EXPECT_EQ(TouchOf(triangle, {2.1, 2.1, 1}), Nothing);
  EXPECT_EQ(TouchOf(triangle, {4, 0, 1}), Nothing);
}

// Points of the bilinear surface of random quadrilaterals, distorted and warped, are inside; points
// off the surface, and points beyond the edges, are not.
TEST(FindTouch, OfAWarpedQuadrilateral) {
  Dice dice = MakeDice(1);
  const auto roll = [&](double low, double high) { return Roll(dice, low, high); };
  for (int k = 0; k < 2000; ++k) {
    const auto near = [&](double x, double y) {
      return Vector3{x + roll(-2, 2), y + roll(-2, 2), roll(-2, 2)};
    };
    const std::vector<Vector3> c{near(0, 0), near(10, 0), near(10, 10), near(0, 10)};
    const double tolerance = 1e-6;
    const ElementRegion quad = RegionOf(c, tolerance);
    const double s = roll(-0.2, 1.2), t = roll(-0.2, 1.2);
    const double off = RollYes(dice) ? 0.0 : (RollYes(dice) ? 1e-5 : -0.5);
    Vector3 p{};
    for (std::size_t i = 0; i < 3; ++i) {
      p[i] = (1 - s) * (1 - t) * c[0][i] + s * (1 - t) * c[1][i] + s * t * c[2][i] +
             (1 - s) * t * c[3][i];
    }
    // The surface is inclined by less than 60 degrees, so that this height is 5e-6 at least.
    p[2] += off;
    const bool isInside = s > 0.001 && s < 0.999 && t > 0.001 && t < 0.999;
    const bool isOutside = s < -0.001 || s > 1.001 || t < -0.001 || t > 1.001;
    if (!isInside && !isOutside) continue;
    EXPECT_EQ(TouchOf(quad, p), isInside && off == 0.0 ? -1 : Nothing) << "s " << s << " t " << t;
    EXPECT_EQ(TouchOf(quad, {0.5 * (c[2][0] + c[3][0]), 0.5 * (c[2][1] + c[3][1]),
                             0.5 * (c[2][2] + c[3][2])}),
              2);
  }
}

// Boxes that hold a point of the element are never left out; most boxes far from it are.
TEST(MayMeet, LeavesOutOnlyBoxesWithoutTheElement) {
  Dice dice = MakeDice(2);
  const auto roll = [&](double low, double high) { return Roll(dice, low, high); };
  int leftOut = 0;
  for (int k = 0; k < 5000; ++k) {
    const std::size_t count = static_cast<std::size_t>(RollInteger(dice, 2, 4));
    std::vector<Vector3> c;
    for (std::size_t i = 0; i < count; ++i) c.push_back({roll(-1, 1), roll(-1, 1), roll(-1, 1)});
    const ElementRegion region = RegionOf(c, 1e-9);
    std::array<double, 4> share{};
    double sum = 0.0;
    for (std::size_t i = 0; i < count; ++i) sum += share[i] = roll(0, 1);
    Vector3 inside{};
    for (std::size_t i = 0; i < count; ++i) {
      for (std::size_t j = 0; j < 3; ++j) inside[j] += share[i] / sum * c[i][j];
    }
    Box box;
    for (std::size_t j = 0; j < 3; ++j) {
      box.low[j] = inside[j] - roll(0, 0.1);
      box.high[j] = inside[j] + roll(0, 0.1);
    }
    EXPECT_TRUE(MayMeet(region, box));
    const Vector3 any{roll(-1, 1), roll(-1, 1), roll(-1, 1)};
    if (!MayMeet(region, {any, any})) ++leftOut;
  }
  EXPECT_GE(leftOut, 4500);
}

}  // namespace
}  // namespace kvx::test
