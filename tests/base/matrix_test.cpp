// The dense-matrix routines against sums written out, their aliasing rules and their order of
// summation.
#include "base/matrix.h"

#include <gtest/gtest.h>

#include <array>

namespace korvex {
namespace {

using Matrix2x3 = std::array<double, 6>;

constexpr Matrix2x3 A{1.0, 2.0, 3.0,  //
                      4.0, 5.0, 6.0};

TEST(Matrix, TransposeTurnsRowsIntoColumns) {
  std::array<double, 6> out{};
  MatTranspose(out.data(), A.data(), 2, 3);
  EXPECT_EQ(out, (std::array<double, 6>{1.0, 4.0, 2.0, 5.0, 3.0, 6.0}));
}

TEST(Matrix, MultiplyRectangular) {
  const std::array<double, 6> B{7.0, 8.0, 9.0, 10.0, 11.0, 12.0};  // 3 x 2
  std::array<double, 4> C{};
  MatMultiply(C.data(), A.data(), B.data(), 2, 3, 2);
  EXPECT_EQ(C, (std::array<double, 4>{58.0, 64.0, 139.0, 154.0}));
}

// 1e16 + 1 - 1e16 is 0 from the left (1 is lost) and 1 in the order 1e16 - 1e16 + 1: the sum must
// run over k ascending.
TEST(Matrix, MultiplySumsInAscendingOrder) {
  const std::array<double, 3> row{1e16, 1.0, -1e16};
  const std::array<double, 3> ones{1.0, 1.0, 1.0};
  double sum = -1.0;
  MatMultiply(&sum, row.data(), ones.data(), 1, 3, 1);
  EXPECT_EQ(sum, 0.0);
}

TEST(Matrix, AddMayAccumulateInPlace) {
  Matrix2x3 C = A;
  MatAdd(C.data(), C.data(), A.data(), 2, 3);
  EXPECT_EQ(C, (Matrix2x3{2.0, 4.0, 6.0, 8.0, 10.0, 12.0}));
}

TEST(Matrix, ScaleMayWorkInPlace) {
  Matrix2x3 C = A;
  MatScale(C.data(), C.data(), -0.5, 2, 3);
  EXPECT_EQ(C, (Matrix2x3{-0.5, -1.0, -1.5, -2.0, -2.5, -3.0}));
}

TEST(Matrix, SizesBelowOneDoNothing) {
  const Matrix2x3 untouched{9.0, 9.0, 9.0, 9.0, 9.0, 9.0};
  for (const std::int32_t bad : {0, -1}) {
    Matrix2x3 C = untouched;
    MatTranspose(C.data(), A.data(), bad, 3);
    MatTranspose(C.data(), A.data(), 2, bad);
    MatMultiply(C.data(), A.data(), A.data(), bad, 2, 2);
    MatMultiply(C.data(), A.data(), A.data(), 2, bad, 2);
    MatMultiply(C.data(), A.data(), A.data(), 2, 2, bad);
    MatAdd(C.data(), A.data(), A.data(), bad, 3);
    MatAdd(C.data(), A.data(), A.data(), 2, bad);
    MatScale(C.data(), A.data(), 2.0, bad, 3);
    MatScale(C.data(), A.data(), 2.0, 2, bad);
    EXPECT_EQ(C, untouched);
  }
}

}  // namespace
}  // namespace korvex
