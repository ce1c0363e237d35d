// Principal values and directions against the tensor that they must give back, and stresses turned
// into a frame and back.
#include "audit/plane_tensor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "results/corner_stress.h"
#include "support/good_models.h"
#include "support/shell_shapes.h"

namespace kvx::test {
namespace {

constexpr double Pi = 3.14159265358979323846;

// larger v v^T + smaller w w^T, v at the angle, w at right angles to it.
PlaneTensor Rebuild(const PrincipalValues& values) {
  const double c = std::cos(values.angle), s = std::sin(values.angle);
  return {values.larger * c * c + values.smaller * s * s,
          values.larger * s * s + values.smaller * c * c, (values.larger - values.smaller) * s * c};
}

// Components from 1e-6 to 1e6, of both signs.
PlaneTensor RollTensor(Dice& dice) {
  const auto roll = [&dice] {
    return Roll(dice, -1.0, 1.0) * std::pow(10.0, RollInteger(dice, -6, 6));
  };
  return {roll(), roll(), roll()};
}

// 4e-15: a few roundings of cosine, sine and products, relative to the largest component.
TEST(PrincipalValues, GiveTheTensorBack) {
  Dice dice = MakeDice(1);
  for (int i = 0; i < 10000; ++i) {
    const PlaneTensor t = RollTensor(dice);
    const PrincipalValues values = FindPrincipalValues(t);
    ASSERT_TRUE(values.hasDirection);
    ASSERT_GE(values.larger, values.smaller);
    ASSERT_GT(values.angle, -Pi / 2);
    ASSERT_LE(values.angle, Pi / 2);
    const double bound = 4e-15 * std::max({std::fabs(t.x), std::fabs(t.y), std::fabs(t.xy)});
    const PlaneTensor back = Rebuild(values);
    ASSERT_NEAR(back.x, t.x, bound);
    ASSERT_NEAR(back.y, t.y, bound);
    ASSERT_NEAR(back.xy, t.xy, bound);
  }
}

struct Known {
  PlaneTensor tensor;
  double larger, smaller, angle;
  bool hasDirection;
};

// By hand. The fourth: h = 3, xy = 4, r = 5 about the mean 4, angle atan2(4, 3) / 2. In the fifth
// the smaller value is far below the last digit of the larger one: the mean less r would lose it.
TEST(PrincipalValues, AreThoseFoundByHand) {
  const double angle43 = std::atan2(4.0, 3.0) / 2.0;
  const Known known[] = {{{0.0, 0.0, 0.0}, 0.0, 0.0, 0.0, false},
                         {{7.0, 7.0, 0.0}, 7.0, 7.0, 0.0, false},
                         {{-7.0, -7.0, 1e-14}, -7.0, -7.0, 0.0, false},
                         {{7.0, 1.0, 4.0}, 9.0, -1.0, angle43, true},
                         {{1e20, 3.0, 0.0}, 1e20, 3.0, 0.0, true},
                         {{3.0, 1e20, 0.0}, 1e20, 3.0, Pi / 2, true},
                         {{1.0, 2.0, -0.0}, 2.0, 1.0, Pi / 2, true},
                         {{2.0, 1.0, -0.0}, 2.0, 1.0, 0.0, true},
                         {{0.0, 0.0, 5.0}, 5.0, -5.0, Pi / 4, true},
                         {{0.0, 0.0, -5.0}, 5.0, -5.0, -Pi / 4, true},
                         {{-3.0, 0.0, 0.0}, 0.0, -3.0, Pi / 2, true},
                         // The squares would leave the range of numbers.
                         {{7e300, 1e300, 4e300}, 9e300, -1e300, angle43, true},
                         {{7e-300, 1e-300, 4e-300}, 9e-300, -1e-300, angle43, true}};
  for (const Known& k : known) {
    const PrincipalValues values = FindPrincipalValues(k.tensor);
    const double scale = std::fabs(k.larger) + std::fabs(k.smaller);
    EXPECT_NEAR(values.larger, k.larger, 1e-14 * scale) << k.tensor.x;
    EXPECT_NEAR(values.smaller, k.smaller, k.tensor.xy == 0.0 ? 0.0 : 1e-14 * scale) << k.tensor.x;
    EXPECT_NEAR(values.angle, k.angle, 1e-15) << k.tensor.x << ' ' << k.tensor.y;
    EXPECT_EQ(values.hasDirection, k.hasDirection) << k.tensor.x;
  }
}

TEST(PrincipalValues, HaveNoDirectionWithoutNumbers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const PlaneTensor& tensor :
       {PlaneTensor{nan, 1.0, 0.0}, PlaneTensor{1.0, nan, 0.0}, PlaneTensor{1.0, 1.0, nan}}) {
    const PrincipalValues values = FindPrincipalValues(tensor);
    EXPECT_TRUE(std::isnan(values.larger) && std::isnan(values.smaller));
    EXPECT_FALSE(values.hasDirection);
    EXPECT_EQ(values.angle, 0.0);
  }
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(FindPrincipalValues({inf, 1.0, 0.0}).larger, inf);
  EXPECT_FALSE(FindPrincipalValues({inf, 1.0, 0.0}).hasDirection);
}

// Against the products of whole matrices, R^T sigma R; and there and back. 1e-15: roundings of
// stresses of about 1.
TEST(StressInFrame, IsTheProductOfTheMatrices) {
  const korvex::StressVector s{1.0, -2.0, 0.5, 0.25, -0.75, 1.5};
  const double sigma[3][3] = {{s[0], s[3], s[4]}, {s[3], s[1], s[5]}, {s[4], s[5], s[2]}};
  const auto& R = korvex::test::InObliquePlane.axes;
  const korvex::StressVector local = StressInFrame(R, s);
  constexpr std::size_t places[6][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {0, 2}, {1, 2}};
  for (std::size_t c = 0; c < 6; ++c) {
    double sum = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) {
        sum += R[3 * i + places[c][0]] * sigma[i][j] * R[3 * j + places[c][1]];
      }
    }
    EXPECT_NEAR(local[c], sum, 4e-15) << c;
    EXPECT_NEAR(korvex::StressToGlobal(R, local)[c], s[c], 4e-15) << c;
  }
}

}  // namespace
}  // namespace kvx::test
