// The last bits of the three-node element: the order of the area's sums, the digits of the weights
// and the form of the products, each compared with forms that are mathematically equal.
#include <gtest/gtest.h>

#include <cmath>

#include "shell/tri_membrane.h"
#include "shell/tri_plate.h"
#include "shell/triangle.h"
#include "support/shell_shapes.h"

namespace korvex {
namespace {

// Dofs of a node of the in-plane part.
enum InPlaneDof : std::size_t { U, V, Drilling };
// Dofs of a node and curvatures of the bending part.
enum PlateDof : std::size_t { W, Rx, Ry };
enum Curvature : std::size_t { KX, KY, KXY };

// A triangle for which the forms below differ.
constexpr Array3 X{0.16, 2.12, 1.31}, Y{0.53, 0.67, 2.58};
constexpr double E = 2.06e11, Mu = 0.3, TK = 0.013;

template <typename Part>
Part MakePart() {
  test::PlaneShape<3> shape{};
  for (std::size_t k = 0; k < shape.size(); ++k) shape[k] = {X[k], Y[k]};
  return test::SetUpShape<Part>(shape, E, Mu, TK);
}

// The two orders in which the element sums its area: the three positive terms in one order, the
// negative ones in two.
double SumArea() {
  const auto& [x1, x2, x3] = X;
  const auto& [y1, y2, y3] = Y;
  return std::fabs(x1 * y2 + x2 * y3 + x3 * y1 - x1 * y3 - x2 * y1 - x3 * y2) / 2.0;
}

double SumPlateArea() {
  const auto& [x1, x2, x3] = X;
  const auto& [y1, y2, y3] = Y;
  return std::fabs(x1 * y2 + x2 * y3 + x3 * y1 - x2 * y1 - x3 * y2 - x1 * y3) * 0.5;
}

double AreaOfEdges() {
  return std::fabs((X[1] - X[0]) * (Y[2] - Y[0]) - (X[2] - X[0]) * (Y[1] - Y[0])) / 2.0;
}

TEST(TriangleBits, AreaIsSummedInItsOrder) {
  EXPECT_EQ(TriangleArea(X, Y), SumArea());
  EXPECT_NE(SumPlateArea(), SumArea());
  EXPECT_NE(AreaOfEdges(), SumArea());
}

// ---------------------------------------------------------------------------------------------
// The membrane.

using Strains = std::array<double, 18>;

// The differences of the coordinates, each divided by 2A.
Strains DivideDifferences(double A) {
  const auto& [x1, x2, x3] = X;
  const auto& [y1, y2, y3] = Y;
  Strains B{y2 - y3, 0.0,     y3 - y1, 0.0,     y1 - y2, 0.0,       //
            0.0,     x3 - x2, 0.0,     x1 - x3, 0.0,     x2 - x1,   //
            x3 - x2, y2 - y3, x1 - x3, y3 - y1, x2 - x1, y1 - y2};  //
  for (double& entry : B) entry /= 2.0 * A;
  return B;
}

TEST(TriangleBits, StrainsAreDividedByTwiceTheArea) {
  Strains B{};
  MakePart<TriMembrane>().StrainMatrix(B.data());
  EXPECT_EQ(B, DivideDifferences(SumArea()));
  EXPECT_NE(DivideDifferences(SumPlateArea()), DivideDifferences(SumArea()));
  Strains multiplied = DivideDifferences(0.5);
  for (double& entry : multiplied) entry *= 1.0 / (2.0 * SumArea());
  EXPECT_NE(multiplied, DivideDifferences(SumArea()));
}

// How the factor s and the row b of the penalty are multiplied.
enum class Penalty { RowsFirst, FactorWithRow, FactorWithColumn };

// The drilling penalty in plain sums.
std::array<double, 81> SumPenalty(double cornerWeight, double A, Penalty form) {
  const double third = 1.0 / 3.0;
  const double gamma = E * 0.5 / (Mu + 1.0) * 10.0 * TK;
  const double points[4][4] = {{third, third, third, 0.5625},
                               {0.6, 0.2, 0.2, cornerWeight},
                               {0.2, 0.6, 0.2, cornerWeight},
                               {0.2, 0.2, 0.6, cornerWeight}};
  std::array<double, 81> K{};
  for (const auto& [L1, L2, L3, weight] : points) {
    const double px = L1 * X[0] + L2 * X[1] + L3 * X[2];
    const double py = L1 * Y[0] + L2 * Y[1] + L3 * Y[2];
    double b[9];
    for (std::size_t k = 0; k < 3; ++k) {
      const std::size_t i = (k + 1) % 3, j = (k + 2) % 3;
      b[3 * k + U] = (X[j] - X[i]) / (4.0 * A);
      b[3 * k + V] = -(Y[i] - Y[j]) / (4.0 * A);
      b[3 * k + Drilling] =
          (X[i] * Y[j] - X[j] * Y[i] + (Y[i] - Y[j]) * px + (X[j] - X[i]) * py) / (2.0 * A);
    }
    const double s = gamma * weight;
    for (std::size_t i = 0; i < 9; ++i) {
      for (std::size_t j = 0; j < 9; ++j) {
        if (form == Penalty::RowsFirst) K[9 * i + j] += s * (b[j] * b[i]);
        if (form == Penalty::FactorWithRow) K[9 * i + j] += s * b[i] * b[j];
        if (form == Penalty::FactorWithColumn) K[9 * i + j] += s * b[j] * b[i];
      }
    }
  }
  for (double& entry : K) entry *= A;
  return K;
}

// 25/48 is 0.52083333333333333...; its double is written with sixteen digits.
TEST(TriangleBits, DrillingPenalty) {
  std::array<double, 81> K{};
  MakePart<TriMembrane>().DrillingStiffness(K.data());
  const auto expected = SumPenalty(0.5208333333333334, SumArea(), Penalty::RowsFirst);
  EXPECT_EQ(K, expected);
  EXPECT_NE(SumPenalty(0.5208333333333333, SumArea(), Penalty::RowsFirst), expected);
  EXPECT_NE(SumPenalty(0.520833333333333, SumArea(), Penalty::RowsFirst), expected);
  EXPECT_NE(SumPenalty(0.5208333333333334, SumPlateArea(), Penalty::RowsFirst), expected);
  EXPECT_NE(SumPenalty(0.5208333333333334, SumArea(), Penalty::FactorWithRow), expected);
  EXPECT_NE(SumPenalty(0.5208333333333334, SumArea(), Penalty::FactorWithColumn), expected);
}

// ---------------------------------------------------------------------------------------------
// The plate.

using Curvatures = std::array<double, 27>;

// e of the discrete Kirchhoff constraints, -0.75 c s.
enum class Mixed { FactorFirst, ProductFirst };

// The constraint rows of rx and ry at the mid-side of edge (i, j): w, rx, ry of each corner.
void ConstrainMidSide(std::size_t i, std::size_t j, Mixed form, double* rx, double* ry) {
  const double dx = X[j] - X[i], dy = Y[j] - Y[i];
  const double l = std::sqrt(dx * dx + dy * dy);
  const double c = -dx / l, s = dy / l;
  const double a = 0.5 * (c * c) - 0.25 * (s * s);
  const double b = 0.5 * (s * s) - 0.25 * (c * c);
  const double e = form == Mixed::FactorFirst ? -0.75 * c * s : -0.75 * (c * s);
  rx[3 * i + W] = -1.5 * s / l, rx[3 * j + W] = 1.5 * s / l;
  ry[3 * i + W] = -1.5 * c / l, ry[3 * j + W] = 1.5 * c / l;
  rx[3 * i + Rx] = rx[3 * j + Rx] = a;
  rx[3 * i + Ry] = rx[3 * j + Ry] = ry[3 * i + Rx] = ry[3 * j + Rx] = e;
  ry[3 * i + Ry] = ry[3 * j + Ry] = b;
}

// The curvatures at the area coordinates L: the mid-side functions 4 Li Lj, then the corners' own.
Curvatures SumCurvatures(const Array3& L, double A, Mixed form) {
  const double dy[3] = {Y[1] - Y[2], Y[2] - Y[0], Y[0] - Y[1]};  // 2A dLk/dx
  const double dx[3] = {X[2] - X[1], X[0] - X[2], X[1] - X[0]};  // 2A dLk/dy
  Curvatures B{};
  for (std::size_t edge = 0; edge < 3; ++edge) {
    const std::size_t i = edge, j = (edge + 1) % 3;
    const double ddx = 2.0 / A * (dy[j] * L[i] + dy[i] * L[j]);
    const double ddy = 2.0 / A * (dx[j] * L[i] + dx[i] * L[j]);
    double rx[9] = {}, ry[9] = {};
    ConstrainMidSide(i, j, form, rx, ry);
    for (std::size_t d = 0; d < 9; ++d) {
      B[9 * KX + d] += ddx * ry[d];    // kx = d(ry)/dx
      B[9 * KY + d] += -ddy * rx[d];   // ky = -d(rx)/dy
      B[9 * KXY + d] += -ddx * rx[d];  // kxy = d(ry)/dy - d(rx)/dx
      B[9 * KXY + d] += ddy * ry[d];
    }
  }
  for (std::size_t k = 0; k < 3; ++k) {
    const double ddx = (4.0 * L[k] - 1.0) / 2.0 * dy[k] / A;
    const double ddy = (4.0 * L[k] - 1.0) / 2.0 * dx[k] / A;
    B[9 * KX + 3 * k + Ry] += ddx;
    B[9 * KY + 3 * k + Rx] += -ddy;
    B[9 * KXY + 3 * k + Rx] += -ddx;
    B[9 * KXY + 3 * k + Ry] += ddy;
  }
  return B;
}

TEST(TriangleBits, Curvatures) {
  for (const Array3& L : {Array3{0.5, 0.5, 0.0}, Array3{0.0, 0.0, 1.0}, Array3{0.2, 0.3, 0.5}}) {
    Curvatures B{};
    MakePart<TriPlate>().CurvatureMatrix(L, B.data());
    const Curvatures expected = SumCurvatures(L, SumPlateArea(), Mixed::FactorFirst);
    EXPECT_EQ(B, expected);
    EXPECT_NE(SumCurvatures(L, SumArea(), Mixed::FactorFirst), expected);
    EXPECT_NE(SumCurvatures(L, SumPlateArea(), Mixed::ProductFirst), expected);
  }
}

// The bending stiffness in plain sums over the mid-sides; A: the area that the sum is scaled with.
std::array<double, 81> SumBending(double weight, double A) {
  const double rigidity = TK * E * TK * TK / 12.0 / (1.0 - Mu * Mu);
  const double D[3][3] = {{rigidity, rigidity * Mu, 0.0},
                          {rigidity * Mu, rigidity, 0.0},
                          {0.0, 0.0, rigidity * ((1.0 - Mu) / 2.0)}};
  std::array<double, 81> K{};
  for (const Array3& L : {Array3{0.5, 0.5, 0.0}, Array3{0.0, 0.5, 0.5}, Array3{0.5, 0.0, 0.5}}) {
    const Curvatures B = SumCurvatures(L, SumPlateArea(), Mixed::FactorFirst);
    for (std::size_t i = 0; i < 9; ++i) {
      for (std::size_t j = 0; j < 9; ++j) {
        double sum = 0.0;
        for (std::size_t r = 0; r < 3; ++r) {
          double DB = 0.0;
          for (std::size_t c = 0; c < 3; ++c) DB += D[r][c] * B[9 * c + j];
          sum += B[9 * r + i] * DB;
        }
        K[9 * i + j] += weight * sum;
      }
    }
  }
  for (double& entry : K) entry *= A;
  return K;
}

TEST(TriangleBits, Bending) {
  TriPlate plate = MakePart<TriPlate>();
  plate.Stiffness();
  const auto expected = SumBending(0.3333333333333333, SumPlateArea());
  EXPECT_EQ(plate.K, expected);
  EXPECT_NE(SumBending(0.333333333333333, SumPlateArea()), expected);
  EXPECT_NE(SumBending(0.3333333333333333, SumArea()), expected);
  EXPECT_NE(SumBending(1.0, SumPlateArea() / 3.0), expected);
}

}  // namespace
}  // namespace korvex
