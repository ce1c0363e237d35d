// The quadrilateral's in-plane part against closed integrals over rectangles and against its Gauss
// rule written out, and the zero-energy modes of the membrane alone.
#include "shell/quad_membrane.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/shell_shapes.h"
#include "support/symmetric_eigenvalues.h"

namespace korvex {
namespace {

constexpr double E = test::ShapeE, Mu = test::ShapeMu, TK = test::ShapeTK;
// Dofs of a node of the in-plane part; the membrane alone has u and v.
enum InPlaneDof : std::size_t { U, V, Drilling };
enum Strain : std::size_t { EXX, EYY, GXY };

constexpr Array4 NodeXi{-1.0, 1.0, 1.0, -1.0};
constexpr Array4 NodeEta{-1.0, -1.0, 1.0, 1.0};

QuadMembrane MakeMembrane(const test::PlaneShape<4>& shape) {
  return test::SetUpShape<QuadMembrane>(shape, E, Mu, TK);
}

test::PlaneShape<4> MakeRectangle(double a, double b) {
  return {{{0.0, 0.0}, {a, 0.0}, {a, b}, {0.0, b}}};
}

std::array<double, 64> MembraneOf(QuadMembrane membrane) {
  std::array<double, 64> K;
  K.fill(-7.0);  // the caller's buffer is not clean; every entry must be written
  membrane.MembraneStiffness(K.data());
  return K;
}

std::array<double, 144> DrillingOf(QuadMembrane membrane) {
  std::array<double, 144> K;
  K.fill(-7.0);
  membrane.DrillingStiffness(K.data());
  return K;
}

std::array<double, 144> StiffnessOf(QuadMembrane membrane) {
  membrane.K.fill(-7.0);
  membrane.Stiffness();
  return membrane.K;
}

TEST(QuadMembrane, InitSetsTheCounts) {
  QuadMembrane membrane;
  membrane.Init();
  EXPECT_EQ(membrane.nodes, 4);
  EXPECT_EQ(membrane.inPlaneDofsPerNode, 2);
  EXPECT_EQ(membrane.dofsPerNode, 3);
  EXPECT_EQ(membrane.membraneDofs, 8);
  EXPECT_EQ(membrane.dofs, 12);
  EXPECT_EQ(membrane.dimension, 2);
  EXPECT_EQ(membrane.strains, 3);
}

// u = 2 x + 3 y, v = 5 x + 7 y: exx = 2, eyy = 7, gxy = 3 + 5.
TEST(QuadMembrane, StrainsOfALinearField) {
  QuadMembrane membrane = MakeMembrane(test::DistortedQuad);
  membrane.ShapeDerivatives(0.3, -0.8);
  membrane.Jacobian();
  membrane.StrainMatrix();
  std::array<double, 3> strain{};
  for (std::size_t k = 0; k < 4; ++k) {
    const double x = membrane.x[k], y = membrane.y[k];
    for (std::size_t i = 0; i < 3; ++i) {
      strain[i] += membrane.B[8 * i + 2 * k + U] * (2.0 * x + 3.0 * y) +
                   membrane.B[8 * i + 2 * k + V] * (5.0 * x + 7.0 * y);
    }
  }
  EXPECT_NEAR(strain[EXX], 2.0, 1e-13);  // rounding of numbers up to some 40
  EXPECT_NEAR(strain[EYY], 7.0, 1e-13);
  EXPECT_NEAR(strain[GXY], 8.0, 1e-13);
}

// Closed integrals of products over the rectangle a x b with N = (1 + r xi)(1 + s eta) / 4, node
// signs r, s:  Nx Nx: b/(4a) r r' (1 + s s'/3),  Nx N'y: r s' / 4,  Ny N': a/8 s (1 + r r'/3),
// N N': a b / 16 (1 + r r'/3)(1 + s s'/3).  E.g. Przemieniecki (1968), sec. 5.4.
struct RectangleIntegrals {
  double a, b;
  double XX(std::size_t i, std::size_t j) const {
    return b / (4.0 * a) * NodeXi[i] * NodeXi[j] * (1.0 + NodeEta[i] * NodeEta[j] / 3.0);
  }
  double YY(std::size_t i, std::size_t j) const {
    return a / (4.0 * b) * NodeEta[i] * NodeEta[j] * (1.0 + NodeXi[i] * NodeXi[j] / 3.0);
  }
  double XY(std::size_t i, std::size_t j) const { return NodeXi[i] * NodeEta[j] / 4.0; }
  double XN(std::size_t i, std::size_t j) const {
    return b / 8.0 * NodeXi[i] * (1.0 + NodeEta[i] * NodeEta[j] / 3.0);
  }
  double YN(std::size_t i, std::size_t j) const {
    return a / 8.0 * NodeEta[i] * (1.0 + NodeXi[i] * NodeXi[j] / 3.0);
  }
  double NN(std::size_t i, std::size_t j) const {
    return a * b / 16.0 * (1.0 + NodeXi[i] * NodeXi[j] / 3.0) *
           (1.0 + NodeEta[i] * NodeEta[j] / 3.0);
  }
};

// 1e-9: the ten-digit abscissa leaves a few 1e-11.
TEST(QuadMembrane, RectangleHasTheClosedStiffness) {
  for (const auto& [a, b] : {std::pair(3.0, 1.25), std::pair(1.0, 1.0), std::pair(0.5, 4.0)}) {
    const RectangleIntegrals integral{a, b};
    const double p = E * TK / (1.0 - Mu * Mu), G = E * TK / (2.0 * (1.0 + Mu));
    std::array<double, 64> expected{};
    for (std::size_t i = 0; i < 4; ++i) {
      for (std::size_t j = 0; j < 4; ++j) {
        const auto entry = [&](InPlaneDof row, InPlaneDof column) -> double& {
          return expected[8 * (2 * i + row) + 2 * j + column];
        };
        entry(U, U) = p * integral.XX(i, j) + G * integral.YY(i, j);
        entry(U, V) = p * Mu * integral.XY(i, j) + G * integral.XY(j, i);
        entry(V, U) = p * Mu * integral.XY(j, i) + G * integral.XY(i, j);
        entry(V, V) = p * integral.YY(i, j) + G * integral.XX(i, j);
      }
    }
    EXPECT_EQ(test::FindDifference(MembraneOf(MakeMembrane(MakeRectangle(a, b))), expected, 1e-9),
              "");
  }
}

// The penalty is ten times the shear modulus; its row is (Ny / 2, -Nx / 2, N) per node.
TEST(QuadMembrane, RectangleHasTheClosedDrillingPenalty) {
  const double a = 3.0, b = 1.25;
  const RectangleIntegrals integral{a, b};
  const double gamma = 10.0 * TK * E / (2.0 * (1.0 + Mu));
  std::array<double, 144> expected{};
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 4; ++j) {
      const std::array<double, 9> block{
          integral.YY(i, j) / 4.0,  -integral.XY(j, i) / 4.0, integral.YN(i, j) / 2.0,
          -integral.XY(i, j) / 4.0, integral.XX(i, j) / 4.0,  -integral.XN(i, j) / 2.0,
          integral.YN(j, i) / 2.0,  -integral.XN(j, i) / 2.0, integral.NN(i, j)};
      for (std::size_t r = 0; r < 3; ++r) {
        for (std::size_t c = 0; c < 3; ++c)
          expected[12 * (3 * i + r) + 3 * j + c] = gamma * block[3 * r + c];
      }
    }
  }
  EXPECT_EQ(test::FindDifference(DrillingOf(MakeMembrane(MakeRectangle(a, b))), expected, 1e-9),
            "");
}

// The membrane's Gauss rule in plain sums, in the same order, so that all bits agree. g: abscissa;
// nearValue, farValue: (1 + g) / 4 and (1 - g) / 4, the xi derivatives at the two eta.
std::array<double, 64> SumMembraneRule(const Array4& x, const Array4& y, double g, double nearValue,
                                       double farValue) {
  const double d = E / (1.0 - Mu * Mu);
  const double D[3][3] = {
      {d * 1.0, d * Mu, d * 0.0}, {d * Mu, d * 1.0, d * 0.0}, {0.0, 0.0, d * ((1.0 - Mu) / 2.0)}};
  std::array<double, 64> K{};
  for (const double xi : {-g, g}) {
    for (const double eta : {-g, g}) {
      const double p = eta < 0.0 ? nearValue : farValue, q = eta < 0.0 ? farValue : nearValue;
      const double dXi[4] = {-p, p, q, -q};
      const double dEta[4] = {(xi - 1.0) / 4.0, (-1.0 - xi) / 4.0, (xi + 1.0) / 4.0,
                              (1.0 - xi) / 4.0};
      double xXi = 0.0, yXi = 0.0, xEta = 0.0, yEta = 0.0;
      for (std::size_t k = 0; k < 4; ++k) {
        xXi += dXi[k] * x[k];
        yXi += dXi[k] * y[k];
        xEta += dEta[k] * x[k];
        yEta += dEta[k] * y[k];
      }
      const double det = yEta * xXi - xEta * yXi;
      double B[3][8] = {};
      for (std::size_t k = 0; k < 4; ++k) {
        B[EXX][2 * k + U] = B[GXY][2 * k + V] = yEta / det * dXi[k] + -yXi / det * dEta[k];
        B[EYY][2 * k + V] = B[GXY][2 * k + U] = -xEta / det * dXi[k] + xXi / det * dEta[k];
      }
      for (std::size_t i = 0; i < 8; ++i) {
        for (std::size_t j = 0; j < 8; ++j) {
          double sum = 0.0;
          for (std::size_t r = 0; r < 3; ++r) {
            double DB = 0.0;
            for (std::size_t c = 0; c < 3; ++c) DB += D[r][c] * B[c][j];
            sum += B[r][i] * DB;
          }
          K[8 * i + j] += std::fabs(det) * TK * 1.0 * sum;
        }
      }
    }
  }
  return K;
}

TEST(QuadMembrane, RuleBitForBit) {
  for (const auto& named : test::AllQuads()) {
    const QuadMembrane membrane = MakeMembrane(named.shape);
    EXPECT_EQ(MembraneOf(membrane),
              SumMembraneRule(membrane.x, membrane.y, 0.5773502692, 0.3943375673, 0.1056624327))
        << named;
  }
}

// The comparison above depends on the ten digits: it fails with the exact root, and with the exact
// root in the derivatives alone.
TEST(QuadMembrane, RuleWithMoreDigitsDiffers) {
  const QuadMembrane membrane = MakeMembrane(test::DistortedQuad);
  const auto K = MembraneOf(membrane);
  const double g = 1.0 / std::sqrt(3.0);
  EXPECT_NE(K, SumMembraneRule(membrane.x, membrane.y, g, (1.0 + g) / 4.0, (1.0 - g) / 4.0));
  EXPECT_NE(
      K, SumMembraneRule(membrane.x, membrane.y, 0.5773502692, (1.0 + g) / 4.0, (1.0 - g) / 4.0));
}

// The Gauss rule of the drilling penalty in plain sums.
std::array<double, 144> SumDrillingRule(const Array4& x, const Array4& y, double g) {
  std::array<double, 144> K{};
  for (const double xi : {-g, g}) {
    for (const double eta : {-g, g}) {
      double N[4], dXi[4], dEta[4];
      double xXi = 0.0, yXi = 0.0, xEta = 0.0, yEta = 0.0;
      for (std::size_t k = 0; k < 4; ++k) {
        N[k] = (1.0 + NodeXi[k] * xi) * (1.0 + NodeEta[k] * eta) / 4.0;
        dXi[k] = NodeXi[k] * (1.0 + NodeEta[k] * eta) / 4.0;
        dEta[k] = NodeEta[k] * (1.0 + NodeXi[k] * xi) / 4.0;
        xXi += dXi[k] * x[k];
        yXi += dXi[k] * y[k];
        xEta += dEta[k] * x[k];
        yEta += dEta[k] * y[k];
      }
      const double det = xXi * yEta - yXi * xEta;
      double b[12];
      for (std::size_t k = 0; k < 4; ++k) {
        b[3 * k + U] = 0.5 * (xXi * dEta[k] - xEta * dXi[k]) / det;
        b[3 * k + V] = -0.5 * (yEta * dXi[k] - yXi * dEta[k]) / det;
        b[3 * k + Drilling] = N[k];
      }
      const double s = 10.0 * TK * E / (2.0 * (1.0 + Mu)) * std::fabs(det);
      for (std::size_t i = 0; i < 12; ++i) {
        for (std::size_t j = 0; j < 12; ++j) K[12 * i + j] += s * b[i] * b[j];
      }
    }
  }
  return K;
}

// 1e-13 is above the rounding and well below the 1e-11 that the exact abscissa would change.
TEST(QuadMembrane, DrillingRule) {
  for (const auto& named : test::AllQuads()) {
    const QuadMembrane membrane = MakeMembrane(named.shape);
    const auto K = DrillingOf(membrane);
    EXPECT_EQ(test::FindDifference(K, SumDrillingRule(membrane.x, membrane.y, 0.5773502692), 1e-13),
              "")
        << named;
    EXPECT_NE(test::FindDifference(K, SumDrillingRule(membrane.x, membrane.y, std::sqrt(1.0 / 3.0)),
                                   1e-13),
              "")
        << named;
  }
}

// Both integrals take the absolute value of the determinant, so the matrices have no negative
// eigenvalue.
TEST(QuadMembrane, BowTieIsIntegratedWithAbsoluteDeterminants) {
  const QuadMembrane membrane = MakeMembrane(test::BowTie);
  QuadMembrane probe = membrane;
  double smallest = 1.0, largest = -1.0;
  for (const double xi : GaussPoints) {
    for (const double eta : GaussPoints) {
      probe.ShapeDerivatives(xi, eta);
      probe.Jacobian();
      smallest = std::min(smallest, probe.detJ);
      largest = std::max(largest, probe.detJ);
    }
  }
  EXPECT_LT(smallest, 0.0);
  EXPECT_GT(largest, 0.0);
  EXPECT_EQ(MembraneOf(membrane),
            SumMembraneRule(membrane.x, membrane.y, 0.5773502692, 0.3943375673, 0.1056624327));
  const auto drilling = SumDrillingRule(membrane.x, membrane.y, 0.5773502692);
  EXPECT_EQ(test::FindDifference(DrillingOf(membrane), drilling, 1e-13), "");
  const auto K = StiffnessOf(membrane);
  const auto eigenvalues = test::SymmetricEigenvalues({K.begin(), K.end()}, 12);
  EXPECT_GT(eigenvalues.front(), -1e-13 * eigenvalues.back());
}

TEST(QuadMembrane, DrillingGrowsLinearlyWithTheShearModulus) {
  QuadMembrane membrane = MakeMembrane(test::DistortedQuad);
  const auto once = DrillingOf(membrane);
  membrane.E *= 2.0;
  const auto twice = DrillingOf(membrane);
  for (std::size_t i = 0; i < once.size(); ++i) EXPECT_EQ(twice[i], 2.0 * once[i]) << i;
  // The shear modulus falls to 1.3 / 1.5 when Mu rises from 0.3 to 0.5.
  membrane.Mu = 0.5;
  const auto other = DrillingOf(membrane);
  for (std::size_t i = 0; i < once.size(); ++i)
    EXPECT_NEAR(other[i], twice[i] * 1.3 / 1.5, 1e-15 * test::LargestEntry(twice)) << i;
}

// The rotation of the plane needs no membrane force either.
TEST(QuadMembrane, MembraneAloneHasThreeZeroEnergyModes) {
  for (const auto& named : test::AllQuads()) {
    const auto K = MembraneOf(MakeMembrane(named.shape));
    const auto eigenvalues = test::SymmetricEigenvalues({K.begin(), K.end()}, 8);
    EXPECT_LT(std::fabs(eigenvalues[0]), 1e-13 * eigenvalues.back()) << named;  // rounding
    EXPECT_LT(std::fabs(eigenvalues[2]), 1e-13 * eigenvalues.back()) << named;
    EXPECT_GT(eigenvalues[3], 1e-3 * eigenvalues.back()) << named;
  }
}

}  // namespace
}  // namespace korvex
