// The triangle's area and its mid-side rule against closed integrals.
#include "shell/triangle.h"

#include <gtest/gtest.h>

namespace korvex {
namespace {

TEST(Triangle, AreaDoesNotDependOnTheSense) {
  EXPECT_EQ(TriangleArea({0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}), 0.5);
  EXPECT_EQ(TriangleArea({0.0, 0.0, 1.0}, {0.0, 1.0, 0.0}), 0.5);
  EXPECT_EQ(TriangleArea({10.0, 13.0, 11.0}, {-5.0, -5.0, -3.0}), 3.0);  // base 3, height 2
  EXPECT_EQ(TriangleArea({0.0, 1.0, 3.0}, {0.0, 2.0, 6.0}), 0.0);
}

// Over the triangle the mean of Li is 1/3, of Li^2 1/6, of Li Lj 1/12.
TEST(Triangle, MidSideRuleIsExactForSquares) {
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      double mean = 0.0, product = 0.0;
      for (const Array3& L : MidSidePoints) {
        mean += MidSideWeight * L[i];
        product += MidSideWeight * L[i] * L[j];
      }
      EXPECT_NEAR(mean, 1.0 / 3.0, 1e-16);
      EXPECT_NEAR(product, i == j ? 1.0 / 6.0 : 1.0 / 12.0, 1e-16);
    }
  }
}

}  // namespace
}  // namespace korvex
