// Beams that share an end, against all pairs of ends.
#include "beamshell/shared_ends.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <set>

namespace korvex::test {
namespace {

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

std::set<std::int32_t> FindSharing(const SharedEnds& ends, std::int32_t beam) {
  std::vector<std::int32_t> beams;
  AppendSharing(ends, beam, beams);
  return {beams.begin(), beams.end()};
}

std::set<std::int32_t> CompareAll(const std::vector<Vector3>& points, std::size_t beam) {
  std::set<std::int32_t> sharing;
  for (const std::size_t end : {2 * beam, 2 * beam + 1}) {
    for (std::size_t other = 0; other < points.size(); ++other) {
      if (Length(Subtract(points[end], points[other])) < CoincidenceTolerance) {
        sharing.insert(static_cast<std::int32_t>(other / 2));
      }
    }
  }
  return sharing;
}

void ExpectThoseOfAllPairs(const std::vector<Vector3>& points) {
  SharedEnds ends;
  IndexEnds(points, ends);
  for (std::size_t b = 0; b < points.size() / 2; ++b) {
    EXPECT_EQ(FindSharing(ends, static_cast<std::int32_t>(b)), CompareAll(points, b)) << b;
  }
}

// Ends on a lattice that is far from the origin, each moved by up to twice the tolerance.
TEST(SharedEnds, AreThoseOfAllPairs) {
  std::mt19937 random(20);
  std::uniform_int_distribution<int> step(0, 3);
  std::uniform_real_distribution<double> gap(-0.002, 0.002);
  for (const double origin : {0.0, 1e6, -3e9, 1e14}) {
    std::vector<Vector3> points;
    for (int k = 0; k < 120; ++k) {
      points.push_back({origin + step(random) + gap(random), 0.01 * origin + step(random),
                        step(random) + gap(random)});
    }
    ExpectThoseOfAllPairs(points);
  }
}

// At the tolerance, and where an end is no point.
TEST(SharedEnds, LieCloserThanTheTolerance) {
  const std::vector<Vector3> points{
      {0, 0, 0},    {5, 0, 0}, {0, 0.0009, 0}, {9, 0, 0},        {0, 0, 0.001}, {9, 9, 0},
      {5, 0, 1e-9}, {5, 0, 0}, {Nan, 0, 0},    {Infinity, 0, 0}, {Nan, 0, 0},   {Infinity, 0, 0}};
  ExpectThoseOfAllPairs(points);
  SharedEnds ends;
  IndexEnds(points, ends);
  EXPECT_EQ(FindSharing(ends, 0), (std::set<std::int32_t>{0, 1, 3}));
  EXPECT_EQ(FindSharing(ends, 2), (std::set<std::int32_t>{2}));
  EXPECT_TRUE(FindSharing(ends, 4).empty());
}

TEST(SharedEnds, OfNoBeams) {
  SharedEnds ends;
  IndexEnds(std::vector<Vector3>{}, ends);
  EXPECT_TRUE(ends.points.empty());
}

}  // namespace
}  // namespace korvex::test
