// Extremes of cubics against curves whose extremes are known.
#include "audit/cubic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvx {
namespace {

TEST(Cubic, ConstantHasNoFlatPlaceAndIsItsOwnExtreme) {
  std::vector<double> places;
  AddFlatPlaces({3.0, 0.0, 0.0, 0.0}, places);
  EXPECT_TRUE(places.empty());
  const Extremes extremes = FindExtremes({3.0, 0.0, 0.0, 0.0});
  EXPECT_EQ(extremes.smallest.value, 3.0);
  EXPECT_EQ(extremes.largest.value, 3.0);
  EXPECT_EQ(extremes.largest.s, 0.0);
}

TEST(Cubic, LineHasItsExtremesAtTheEnds) {
  const Extremes extremes = FindExtremes({1.0, -4.0, 0.0, 0.0});
  EXPECT_EQ(extremes.largest.value, 1.0);
  EXPECT_EQ(extremes.largest.s, 0.0);
  EXPECT_EQ(extremes.smallest.value, -3.0);
  EXPECT_EQ(extremes.smallest.s, 1.0);
}

// s (1 - s) is largest, 1/4, at s = 1/2.
TEST(Cubic, ParabolaHasOneFlatPlace) {
  std::vector<double> places;
  AddFlatPlaces({0.0, 1.0, -1.0, 0.0}, places);
  ASSERT_EQ(places.size(), 1U);
  EXPECT_EQ(places[0], 0.5);
  EXPECT_EQ(FindExtremes({0.0, 1.0, -1.0, 0.0}).largest.value, 0.25);
}

// The slope 6 (s - 1/4) (s - 1/2) belongs to 2 s^3 - 9/4 s^2 + 3/4 s, which is 5/64 at 1/4.
TEST(Cubic, BothFlatPlacesOfACubicAreFound) {
  std::vector<double> places;
  AddFlatPlaces({0.0, 0.75, -2.25, 2.0}, places);
  std::sort(places.begin(), places.end());
  ASSERT_EQ(places.size(), 2U);
  EXPECT_NEAR(places[0], 0.25, 1e-15);
  EXPECT_NEAR(places[1], 0.5, 1e-15);
  EXPECT_NEAR(Evaluate({0.0, 0.75, -2.25, 2.0}, 0.25), 5.0 / 64.0, 1e-16);
}

// (s - 1/2)^3 has one place of zero slope, a double one.
TEST(Cubic, DoubleFlatPlaceIsListedOnce) {
  std::vector<double> places;
  AddFlatPlaces({-0.125, 0.75, -1.5, 1.0}, places);
  ASSERT_EQ(places.size(), 1U);
  EXPECT_EQ(places[0], 0.5);
}

// Between two ends at 0, s - 3 s^2 + 2 s^3 = s (1 - s) (1 - 2 s) swings to +-1/(6 sqrt 3) at
// s = 1/2 -+ 1/(2 sqrt 3).
TEST(Cubic, ExtremesBetweenTheEnds) {
  const Extremes extremes = FindExtremes({0.0, 1.0, -3.0, 2.0});
  const double high = 1.0 / (6.0 * std::sqrt(3.0)), off = 0.5 / std::sqrt(3.0);
  EXPECT_NEAR(extremes.largest.value, high, 1e-16);
  EXPECT_NEAR(extremes.largest.s, 0.5 - off, 1e-15);
  EXPECT_NEAR(extremes.smallest.value, -high, 1e-16);
  EXPECT_NEAR(extremes.smallest.s, 0.5 + off, 1e-15);
}

TEST(Cubic, TinyCubicTermDoesNotSpoilTheParabola) {
  std::vector<double> places;
  AddFlatPlaces({0.0, 1.0, -1.0, 1e-30}, places);
  ASSERT_EQ(places.size(), 1U);
  EXPECT_NEAR(places[0], 0.5, 1e-15);
}

TEST(Cubic, NotANumberGivesNotANumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (std::size_t i = 0; i < 4; ++i) {
    Cubic cubic{1.0, 1.0, 1.0, 1.0};
    cubic[i] = nan;
    const Extremes extremes = FindExtremes(cubic);
    EXPECT_TRUE(std::isnan(extremes.smallest.value)) << i;
    EXPECT_TRUE(std::isnan(extremes.largest.value)) << i;
  }
}

}  // namespace
}  // namespace kvx
