// The rule for which corners are averaged with a corner, and the sums that it gives.
#include "results/corner_sum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace korvex {
namespace {

constexpr StressVector Top{1, 2, 3, 4, 5, 6}, Bottom{10, 20, 30, 40, 50, 60};

// The empty sum of a corner whose own element has this normal and thickness.
CornerSum BeginSum(const Vector3& normal, double TK) { return {{}, {}, 0.0, normal, TK}; }

// Whether a corner of an element with this normal and thickness goes into the sum.
bool IsIncluded(const Vector3& own, double ownTK, const Vector3& other, double otherTK) {
  CornerSum sum = BeginSum(own, ownTK);
  AddCorner(Top, Bottom, other, otherTK, sum);
  return sum.count == 1.0;
}

bool IsIncludedInPlane(double ownTK, double otherTK) {
  return IsIncluded({0, 0, 1}, ownTK, {0, 0, 1}, otherTK);
}

TEST(CornerSum, AddsFaceByFaceAndCounts) {
  CornerSum sum{{100, 200, 300, 400, 500, 600}, {1, 1, 1, 1, 1, 1}, 2.0, {0, 0, 1}, 10.0};
  AddCorner(Top, Bottom, {0, 0, 1}, 10.0, sum);
  EXPECT_EQ(sum.top, (StressVector{101, 202, 303, 404, 505, 606}));
  EXPECT_EQ(sum.bottom, (StressVector{11, 21, 31, 41, 51, 61}));
  EXPECT_EQ(sum.count, 3.0);
  EXPECT_EQ(sum.normal, (Vector3{0, 0, 1}));  // the own element's stay
  EXPECT_EQ(sum.TK, 10.0);
}

TEST(CornerSum, ExcludedCornerLeavesTheSum) {
  CornerSum sum{Top, Bottom, 2.0, {0, 0, 1}, 10.0};
  AddCorner(Top, Bottom, {1, 0, 0}, 10.0, sum);
  EXPECT_EQ(sum.top, Top);
  EXPECT_EQ(sum.bottom, Bottom);
  EXPECT_EQ(sum.count, 2.0);
}

TEST(CornerSum, OppositeNormalSwapsTheFaces) {
  CornerSum sum = BeginSum({0.6, 0, 0.8}, 10.0);
  AddCorner(Top, Bottom, {-0.6, 0, -0.8}, 10.0, sum);
  EXPECT_EQ(sum.top, Bottom);
  EXPECT_EQ(sum.bottom, Top);
  EXPECT_EQ(sum.count, 1.0);
}

// Perpendicular normals count as opposite. With thickness zero no offset excludes the corner, so
// that the exchanged faces show it.
TEST(CornerSum, PerpendicularNormalSwapsTheFaces) {
  CornerSum sum = BeginSum({0, 0, 1}, 0.0);
  AddCorner(Top, Bottom, {1, 0, 0}, 0.0, sum);
  EXPECT_EQ(sum.top, Bottom);
  EXPECT_EQ(sum.bottom, Top);
}

// The sign of the dot product decides, with all three components: in each of these pairs one
// negative product outweighs the other two. The thickness is zero, because the fold is too steep to
// be averaged otherwise.
TEST(CornerSum, EveryComponentCountsInTheDirection) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    Vector3 own{0.5, 0.5, 0.5}, other{0.5, 0.5, 0.5};
    own[axis] = 1.0;
    other[axis] = -1.0;  // 0.25 + 0.25 - 1
    CornerSum sum = BeginSum(own, 0.0);
    AddCorner(Top, Bottom, other, 0.0, sum);
    EXPECT_EQ(sum.top, Bottom) << axis;
  }
}

// The offsets' difference counts with all its components: own normal along an axis, the other one
// turned from it towards each of the other two by 11 and 12 degrees; the limit is 11.48.
// It is the same when the other normal is reversed.
TEST(CornerSum, FoldsUpTo11Point48Degrees) {
  for (const double degrees : {11.0, 12.0}) {
    const double angle = degrees * std::acos(-1.0) / 180.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      for (std::size_t step = 1; step < 3; ++step) {
        for (const double sign : {1.0, -1.0}) {
          Vector3 own{}, other{};
          own[axis] = 1.0;
          other[axis] = sign * std::cos(angle);
          other[(axis + step) % 3] = sign * std::sin(angle);
          EXPECT_EQ(IsIncluded(own, 10.0, other, 10.0), degrees == 11.0) << axis << ' ' << step;
        }
      }
    }
  }
}

// 1.25 apart, exactly: a tenth of 12.5, more than a tenth of 10.
TEST(CornerSum, BoundIsATenthOfTheOwnThickness) {
  EXPECT_TRUE(IsIncludedInPlane(12.5, 10.0));
  EXPECT_FALSE(IsIncludedInPlane(10.0, 12.5));
  EXPECT_FALSE(IsIncludedInPlane(12.5, std::nextafter(10.0, 0.0)));
}

// Elements a fifth thicker or thinner lie on the bound, and rounding decides. 3 / 10 is the double
// nearest to 0.3; 1.8 - 1.5 comes out as the next one, and 3 times 0.1 too, which would include it.
TEST(CornerSum, BoundIsAQuotient) {
  ASSERT_LT(3.0 / 10.0, 3.6 * 0.5 - 3.0 * 0.5);
  ASSERT_EQ(3.0 * 0.1, 3.6 * 0.5 - 3.0 * 0.5);
  EXPECT_FALSE(IsIncludedInPlane(3.0, 3.6));
  const double pairs[][2] = {{3.0, 2.4},  {6.0, 4.8},   {6.0, 7.2},  {8.5, 6.8},
                             {12.0, 9.6}, {12.0, 14.4}, {24.0, 19.2}};
  for (const auto& [own, other] : pairs) {
    // The same as {3, 3.6}: the difference is above the quotient and not above the product.
    const double difference = std::fabs(other * 0.5 - own * 0.5);
    ASSERT_GT(difference, own / 10.0);
    ASSERT_LE(difference, own * 0.1);
    EXPECT_FALSE(IsIncludedInPlane(own, other)) << own << ' ' << other;
  }
  // A difference equal to the bound is included: 1 = 10 / 10.
  EXPECT_TRUE(IsIncludedInPlane(10.0, 12.0));
  EXPECT_TRUE(IsIncludedInPlane(10.0, 8.0));
}

// With a negative own thickness no corner is within the bound. A comparison with NaN is false and
// excludes nothing.
TEST(CornerSum, NegativeZeroAndNaNThicknesses) {
  constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(IsIncludedInPlane(-10.0, -10.0));
  EXPECT_TRUE(IsIncludedInPlane(0.0, 0.0));
  EXPECT_TRUE(IsIncludedInPlane(10.0, NaN));
  EXPECT_TRUE(IsIncluded({0, 0, 1}, 10.0, {NaN, NaN, NaN}, 10.0));
}

// An element's corner adds its recovered stresses, not the averages; the normal is the third column
// of the element's frame.
TEST(CornerSum, CornerOfAnElement) {
  Shell3Element element{};
  element.TK = 10.0;
  element.Frame = {1, 4, 0.6, 2, 5, 0.0, 3, 6, 0.8};
  element.NodeStressTop[1] = Top;
  element.NodeStressBottom[1] = Bottom;
  element.AvgStressTop[1].fill(7.0);
  EXPECT_EQ(Normal(element), (Vector3{0.6, 0.0, 0.8}));
  CornerSum sum = BeginSum({0.6, 0, 0.8}, 10.0);
  AddCorner(element, 1, sum);
  EXPECT_EQ(sum.top, Top);
  EXPECT_EQ(sum.bottom, Bottom);
  AddCorner(element, 0, sum);  // zeros
  EXPECT_EQ(sum.top, Top);
  EXPECT_EQ(sum.count, 2.0);
}

}  // namespace
}  // namespace korvex
