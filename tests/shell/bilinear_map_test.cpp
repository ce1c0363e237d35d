// The bilinear map: shape functions, derivatives and Jacobian against known maps, and the sign of
// the determinant.
#include "shell/bilinear_map.h"

#include <gtest/gtest.h>

#include <cmath>

namespace korvex {
namespace {

// Multiples of 1/8, so that all sums below are exact.
constexpr std::array<std::array<double, 2>, 5> Points{
    {{0.0, 0.0}, {-0.5, 0.25}, {0.75, -0.125}, {1.0, -1.0}, {-0.25, 1.0}}};
constexpr Array4 NodeXi{-1.0, 1.0, 1.0, -1.0};
constexpr Array4 NodeEta{-1.0, -1.0, 1.0, 1.0};

struct Mapped {
  Array4 J{}, Jinv{};
  double detJ = 0.0;
  Matrix2x4 dN{}, dNdx{};
};

Mapped MapAt(double xi, double eta, const Array4& x, const Array4& y) {
  Mapped m;
  BilinearDerivatives(xi, eta, m.dN);
  BilinearJacobian(m.dN, x, y, m.J, m.detJ, m.Jinv, m.dNdx);
  return m;
}

// 1 / sqrt(3) is 0.57735026918962...; the rule has ten decimals of it.
TEST(BilinearMap, GaussAbscissaHasTenDecimals) {
  EXPECT_EQ(GaussPoints[0], -0.5773502692);
  EXPECT_EQ(GaussPoints[1], 0.5773502692);
  EXPECT_EQ(GaussWeights[0], 1.0);
  EXPECT_EQ(GaussWeights[1], 1.0);
  EXPECT_NE(GaussAbscissa, 1.0 / std::sqrt(3.0));
}

TEST(BilinearMap, EachFunctionIsOneAtItsOwnNode) {
  for (std::size_t node = 0; node < 4; ++node) {
    Array4 N;
    BilinearFunctions(NodeXi[node], NodeEta[node], N);
    Array4 expected{};
    expected[node] = 1.0;
    EXPECT_EQ(N, expected);
  }
}

TEST(BilinearMap, FunctionsAreTheProductsOfLinearOnes) {
  for (const auto& [xi, eta] : Points) {
    Array4 N;
    BilinearFunctions(xi, eta, N);
    for (std::size_t k = 0; k < 4; ++k)
      EXPECT_EQ(N[k], (1.0 + NodeXi[k] * xi) * (1.0 + NodeEta[k] * eta) / 4.0);
  }
}

// The functions are linear along xi and along eta, so differences across the square are exact.
TEST(BilinearMap, DerivativesAreTheSlopesOfTheFunctions) {
  for (const auto& [xi, eta] : Points) {
    Matrix2x4 dN;
    BilinearDerivatives(xi, eta, dN);
    Array4 left, right, below, above;
    BilinearFunctions(-1.0, eta, left);
    BilinearFunctions(1.0, eta, right);
    BilinearFunctions(xi, -1.0, below);
    BilinearFunctions(xi, 1.0, above);
    for (std::size_t k = 0; k < 4; ++k) {
      EXPECT_EQ(dN[k], (right[k] - left[k]) / 2.0) << k;
      EXPECT_EQ(dN[4 + k], (above[k] - below[k]) / 2.0) << k;
    }
  }
}

TEST(BilinearMap, UnitSquareHasADeterminantOfAQuarterEverywhere) {
  for (const auto& [xi, eta] : Points) {
    const Mapped m = MapAt(xi, eta, {0.0, 1.0, 1.0, 0.0}, {0.0, 0.0, 1.0, 1.0});
    EXPECT_EQ(m.detJ, 0.25);
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(m.dNdx[i], 2.0 * m.dN[i]);
  }
}

// x = 2 + 3 xi + 0.5 eta, y = 1 - 0.25 xi + 2 eta: row 0 of J holds the xi derivatives of x and y,
// detJ = 6 + 0.125, and the derivatives of f = 5 x - 7 y + 1 are 5 and -7.
TEST(BilinearMap, JacobianAndGradientOfAnAffineMap) {
  Array4 x{}, y{}, f{};
  for (std::size_t k = 0; k < 4; ++k) {
    x[k] = 2.0 + 3.0 * NodeXi[k] + 0.5 * NodeEta[k];
    y[k] = 1.0 - 0.25 * NodeXi[k] + 2.0 * NodeEta[k];
    f[k] = 5.0 * x[k] - 7.0 * y[k] + 1.0;
  }
  for (const auto& [xi, eta] : Points) {
    const Mapped m = MapAt(xi, eta, x, y);
    EXPECT_EQ(m.J, (Array4{3.0, -0.25, 0.5, 2.0}));
    EXPECT_EQ(m.detJ, 6.125);
    EXPECT_EQ(m.Jinv, (Array4{2.0 / 6.125, 0.25 / 6.125, -0.5 / 6.125, 3.0 / 6.125}));
    double fx = 0.0, fy = 0.0;
    for (std::size_t k = 0; k < 4; ++k) {
      fx += m.dNdx[k] * f[k];
      fy += m.dNdx[4 + k] * f[k];
    }
    EXPECT_NEAR(fx, 5.0, 1e-14);  // rounding of numbers up to some 30
    EXPECT_NEAR(fy, -7.0, 1e-14);
  }
}

// A linear function keeps its gradient on any shape: the map is isoparametric.
TEST(BilinearMap, GradientIsExactOnADistortedElement) {
  const Array4 x{0.0, 4.0, 3.25, 0.5}, y{0.0, 0.0, 2.5, 3.0};
  for (const auto& [xi, eta] : Points) {
    const Mapped m = MapAt(xi, eta, x, y);
    double fx = 0.0, fy = 0.0;
    for (std::size_t k = 0; k < 4; ++k) {
      fx += m.dNdx[k] * (5.0 * x[k] - 7.0 * y[k] + 1.0);
      fy += m.dNdx[4 + k] * (5.0 * x[k] - 7.0 * y[k] + 1.0);
    }
    EXPECT_NEAR(fx, 5.0, 1e-13);  // rounding of numbers up to some 30, divided by detJ
    EXPECT_NEAR(fy, -7.0, 1e-13);
  }
}

TEST(BilinearMap, ConvexElementInOrderHasAPositiveDeterminantEverywhere) {
  for (const double xi : {-1.0, 0.0, 1.0}) {
    for (const double eta : {-1.0, 0.0, 1.0})
      EXPECT_GT(MapAt(xi, eta, {0.0, 4.0, 3.25, 0.5}, {0.0, 0.0, 2.5, 3.0}).detJ, 0.0);
  }
}

TEST(BilinearMap, ClockwiseSquareHasANegativeDeterminant) {
  EXPECT_EQ(MapAt(0.5, 0.5, {0.0, 0.0, 1.0, 1.0}, {0.0, 1.0, 1.0, 0.0}).detJ, -0.25);
}

// Nodes 3 and 4 of the unit square exchanged: x = (1 + xi)(1 - eta)/4 + (1 - xi)(1 + eta)/4 ...,
// in all detJ = -eta / 4.
TEST(BilinearMap, BowTieHasBothSigns) {
  const Array4 x{0.0, 1.0, 0.0, 1.0}, y{0.0, 0.0, 1.0, 1.0};
  EXPECT_EQ(MapAt(0.25, -0.5, x, y).detJ, 0.125);
  EXPECT_EQ(MapAt(0.25, 0.5, x, y).detJ, -0.125);
}

TEST(BilinearMap, DegenerateElementIsNotFinite) {
  for (const double value : MapAt(0.5, 0.5, {0.0, 1.0, 2.0, 3.0}, {0.0, 1.0, 2.0, 3.0}).dNdx)
    EXPECT_FALSE(std::isfinite(value));
}

}  // namespace
}  // namespace korvex
