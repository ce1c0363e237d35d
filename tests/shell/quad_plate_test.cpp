// The quadrilateral's bending part: shear strains tied at the mid-sides, constant curvature,
// constant shear, and its Gauss rule written out.
#include "shell/quad_plate.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/shell_shapes.h"
#include "support/symmetric_eigenvalues.h"

namespace korvex {
namespace {

constexpr double E = test::ShapeE, Mu = test::ShapeMu, TK = test::ShapeTK;
// Dofs of a node and curvatures of the bending part.
enum PlateDof : std::size_t { W, Rx, Ry };
enum Curvature : std::size_t { KX, KY, KXY };

constexpr Array4 NodeXi{-1.0, 1.0, 1.0, -1.0};
constexpr Array4 NodeEta{-1.0, -1.0, 1.0, 1.0};
constexpr std::array<std::array<double, 2>, 5> Points{
    {{0.0, 0.0}, {-0.5773502692, 0.5773502692}, {0.75, -0.125}, {1.0, -1.0}, {-0.25, 1.0}}};

QuadPlate MakePlate(const test::PlaneShape<4>& shape, double thickness = TK) {
  return test::SetUpShape<QuadPlate>(shape, E, Mu, thickness);
}

std::array<double, 144> StiffnessOf(QuadPlate plate) {
  plate.K.fill(-7.0);  // the sum starts at zero, whatever was there
  plate.Stiffness();
  return plate.K;
}

// The map's derivatives at a point: x to xi, y to xi, x to eta, y to eta.
std::array<double, 4> MapDerivatives(const QuadPlate& plate, double xi, double eta) {
  std::array<double, 4> d{};
  for (std::size_t k = 0; k < 4; ++k) {
    const double dXi = NodeXi[k] * (1.0 + NodeEta[k] * eta) / 4.0;
    const double dEta = NodeEta[k] * (1.0 + NodeXi[k] * xi) / 4.0;
    d[0] += dXi * plate.x[k];
    d[1] += dXi * plate.y[k];
    d[2] += dEta * plate.x[k];
    d[3] += dEta * plate.y[k];
  }
  return d;
}

double Determinant(const std::array<double, 4>& d) { return d[0] * d[3] - d[1] * d[2]; }

std::array<double, 24> ShearStrainsOf(QuadPlate plate, double xi, double eta) {
  plate.Bs.fill(-7.0);
  plate.ShearStrainMatrix(Determinant(MapDerivatives(plate, xi, eta)), xi, eta);
  return plate.Bs;
}

enum class Directions { AtThePoint, OfTheMidLines };

// The assumed shear strains from their definition. Along an edge i-j the covariant strain at the
// middle is half of  w_j - w_i + (x_j - x_i) ry - (y_j - y_i) rx  with the mean rotations; each of
// the two is interpolated linearly between opposite edges and then turned into x and y with the
// base vectors gXi, gEta:  gxz = (gamXi gEta_y - gamEta gXi_y) / |det|,
// gyz = (gamEta gXi_x - gamXi gEta_x) / |det|.
std::array<double, 24> TieShearStrains(const QuadPlate& plate, double xi, double eta,
                                       Directions directions) {
  std::array<double, 12> gamXi{}, gamEta{};
  const auto addEdge = [&plate](std::size_t i, std::size_t j, double share,
                                std::array<double, 12>& gam) {
    gam[3 * i + W] -= share / 2.0;
    gam[3 * j + W] += share / 2.0;
    for (const std::size_t k : {i, j}) {
      gam[3 * k + Rx] -= share * (plate.y[j] - plate.y[i]) / 4.0;
      gam[3 * k + Ry] += share * (plate.x[j] - plate.x[i]) / 4.0;
    }
  };
  addEdge(0, 1, (1.0 - eta) / 2.0, gamXi);
  addEdge(3, 2, (1.0 + eta) / 2.0, gamXi);
  addEdge(0, 3, (1.0 - xi) / 2.0, gamEta);
  addEdge(1, 2, (1.0 + xi) / 2.0, gamEta);

  const std::array<double, 4> d = MapDerivatives(plate, xi, eta);
  std::array<double, 4> g = d;
  if (directions == Directions::OfTheMidLines) {
    // Lengths as at the point, directions as at the centre, where they are those of the mid-lines.
    const std::array<double, 4> centre = MapDerivatives(plate, 0.0, 0.0);
    const double xiScale = std::hypot(d[0], d[1]) / std::hypot(centre[0], centre[1]);
    const double etaScale = std::hypot(d[2], d[3]) / std::hypot(centre[2], centre[3]);
    g = {centre[0] * xiScale, centre[1] * xiScale, centre[2] * etaScale, centre[3] * etaScale};
  }
  const double det = std::fabs(Determinant(d));
  std::array<double, 24> Bs{};
  for (std::size_t i = 0; i < 12; ++i) {
    Bs[i] = (gamXi[i] * g[3] - gamEta[i] * g[1]) / det;
    Bs[12 + i] = (gamEta[i] * g[0] - gamXi[i] * g[2]) / det;
  }
  return Bs;
}

TEST(QuadPlate, InitSetsTheCounts) {
  QuadPlate plate;
  plate.Init();
  EXPECT_EQ(plate.nodes, 4);
  EXPECT_EQ(plate.dofsPerNode, 3);
  EXPECT_EQ(plate.dimension, 2);
  EXPECT_EQ(plate.curvatures, 3);
  EXPECT_EQ(plate.dofs, 12);
}

// rx = 2 x + 3 y, ry = 5 x + 7 y: kx = d(ry)/dx, ky = -d(rx)/dy, kxy = d(ry)/dy - d(rx)/dx.
TEST(QuadPlate, CurvaturesOfALinearRotationField) {
  QuadPlate plate = MakePlate(test::DistortedQuad);
  plate.Bb.fill(-7.0);
  plate.ShapeFunctions(0.3, -0.8);
  plate.Jacobian();
  plate.CurvatureMatrix();
  std::array<double, 3> curvature{};
  for (std::size_t k = 0; k < 4; ++k) {
    const double x = plate.x[k], y = plate.y[k];
    const std::array<double, 3> d{11.0 * x - y, 2.0 * x + 3.0 * y, 5.0 * x + 7.0 * y};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) curvature[i] += plate.Bb[12 * i + 3 * k + j] * d[j];
    }
  }
  EXPECT_NEAR(curvature[KX], 5.0, 1e-13);  // rounding of numbers up to some 40
  EXPECT_NEAR(curvature[KY], -3.0, 1e-13);
  EXPECT_NEAR(curvature[KXY], 5.0, 1e-13);
}

// 1e-14: rounding of a handful of operations.
TEST(QuadPlate, ShearStrainsAreTiedAtTheMidSides) {
  for (const auto& named : test::AllQuads()) {
    const QuadPlate plate = MakePlate(named.shape);
    for (const auto& [xi, eta] : Points) {
      EXPECT_EQ(
          test::FindDifference(ShearStrainsOf(plate, xi, eta),
                               TieShearStrains(plate, xi, eta, Directions::OfTheMidLines), 1e-14),
          "")
          << named << " at " << xi << ", " << eta;
    }
  }
}

// Where opposite edges are parallel, the base vectors have the same directions everywhere: the tied
// strains are the covariant ones without approximation.
TEST(QuadPlate, ShearStrainsOfParallelogramsAreTheCovariantOnes) {
  for (const auto& shape : {test::UnitSquare, test::Parallelogram}) {
    const QuadPlate plate = MakePlate(shape);
    for (const auto& [xi, eta] : Points) {
      EXPECT_EQ(
          test::FindDifference(ShearStrainsOf(plate, xi, eta),
                               TieShearStrains(plate, xi, eta, Directions::AtThePoint), 1e-14),
          "");
    }
  }
}

// On a distorted shape the directions of the mid-lines are used everywhere; those at the point
// would give other strains.
TEST(QuadPlate, ShearStrainsOfDistortedShapesUseTheMidLines) {
  const QuadPlate plate = MakePlate(test::DistortedQuad);
  for (const auto& [xi, eta] : Points) {
    if (xi == 0.0 && eta == 0.0) continue;
    EXPECT_NE(test::FindDifference(ShearStrainsOf(plate, xi, eta),
                                   TieShearStrains(plate, xi, eta, Directions::AtThePoint), 1e-2),
              "");
  }
}

// 2 x 2 about the origin: gxz = dw/dx + ry, and ry is the mean along xi, (1 +- eta) / 4 of each.
TEST(QuadPlate, ShearStrainsOfTheSquareOfSideTwo) {
  const QuadPlate plate = MakePlate({{{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}}});
  const double xi = 0.25, eta = -0.5;
  std::array<double, 24> expected{};
  for (std::size_t k = 0; k < 4; ++k) {
    expected[3 * k + W] = NodeXi[k] * (1.0 + NodeEta[k] * eta) / 4.0;
    expected[3 * k + Ry] = (1.0 + NodeEta[k] * eta) / 4.0;
    expected[12 + 3 * k + W] = NodeEta[k] * (1.0 + NodeXi[k] * xi) / 4.0;
    expected[12 + 3 * k + Rx] = -(1.0 + NodeXi[k] * xi) / 4.0;
  }
  EXPECT_EQ(ShearStrainsOf(plate, xi, eta), expected);  // exact in binary
}

// The strains are divided by the determinant's absolute value.
TEST(QuadPlate, SignOfTheDeterminantDoesNotMatter) {
  QuadPlate plate = MakePlate(test::DistortedQuad);
  plate.ShearStrainMatrix(1.75, 0.25, 0.5);
  const std::array<double, 24> Bs = plate.Bs;
  plate.ShearStrainMatrix(-1.75, 0.25, 0.5);
  EXPECT_EQ(plate.Bs, Bs);
}

// d: w, rx, ry per node of the field w = -(p x^2 + q y^2 + 2 r x y) / 2 without shear, rx = dw/dy
// and ry = -dw/dx, whose curvatures are p, q and 2 r.
std::array<double, 12> CurvedField(const QuadPlate& plate, double p, double q, double r) {
  std::array<double, 12> d{};
  for (std::size_t k = 0; k < 4; ++k) {
    const double x = plate.x[k], y = plate.y[k];
    d[3 * k + W] = -(p * x * x + q * y * y + 2.0 * r * x * y) / 2.0;
    d[3 * k + Rx] = -(q * y + r * x);
    d[3 * k + Ry] = p * x + r * y;
  }
  return d;
}

double EnergyOf(const std::array<double, 144>& K, const std::array<double, 12>& d) {
  double energy = 0.0;
  for (std::size_t i = 0; i < 12; ++i) {
    for (std::size_t j = 0; j < 12; ++j) energy += d[i] * K[12 * i + j] * d[j] / 2.0;
  }
  return energy;
}

// Along every edge the tied strain of a quadratic deflection is zero, so there is no shear energy
// on any shape and however thin: no locking. Energy per area: D (p^2 + q^2 + 2 Mu p q) / 2 +
// D (1 - Mu) r^2. The shear stiffness is about 1 / TK^2 times the bending stiffness, and the bound
// is the rounding that it leaves.
TEST(QuadPlate, ConstantCurvatureHasTheEnergyOfAThinPlate) {
  const double p = 0.5, q = -0.75, r = 0.375;
  for (const double thickness : {0.25, 0.001}) {
    const double rigidity = E * thickness * thickness * thickness / 12.0 / (1.0 - Mu * Mu);
    const double perArea = rigidity * ((p * p + q * q) / 2.0 + Mu * p * q + (1.0 - Mu) * r * r);
    for (const auto& named : test::AllQuads()) {
      const QuadPlate plate = MakePlate(named.shape, thickness);
      const double expected = perArea * test::IntegrateMonomial(named.shape, 0, 0);
      EXPECT_NEAR(EnergyOf(StiffnessOf(plate), CurvedField(plate, p, q, r)), expected,
                  1e-13 / (thickness * thickness) * expected)
          << named << " of thickness " << thickness;
    }
  }
}

// w = g x + h y without rotations: gxz = g, gyz = h. Energy per area G TK / 1.2 (g^2 + h^2) / 2;
// parallelograms only, elsewhere the mid-lines' directions change it.
TEST(QuadPlate, ConstantShearIsDividedByTheCorrection) {
  const double g = 0.5, h = -0.75;
  const double shearModulus = E / (2.0 * (1.0 + Mu));
  for (const auto& shape : {test::UnitSquare, test::Parallelogram}) {
    const QuadPlate plate = MakePlate(shape);
    std::array<double, 12> d{};
    for (std::size_t k = 0; k < 4; ++k) d[3 * k + W] = g * plate.x[k] + h * plate.y[k];
    const double expected =
        shearModulus * TK / 1.2 * (g * g + h * h) / 2.0 * test::IntegrateMonomial(shape, 0, 0);
    EXPECT_NEAR(EnergyOf(StiffnessOf(plate), d), expected, 1e-14 * expected);  // rounding
  }
}

// The order of the operations counts: another differs in the last bit for these values.
TEST(QuadPlate, ShearRigidityBitForBit) {
  const double e = 2.06e11, t = 0.016;
  QuadPlate plate = MakePlate(test::UnitSquare, t);
  plate.E = e;
  plate.Stiffness();
  const double c = e * t / ((Mu + 1.0) * 2.0 * 1.2);
  EXPECT_EQ(plate.Ds, (std::array<double, 4>{c, 0.0, 0.0, c}));
  EXPECT_NE(c, e * t / ((Mu + 1.0) * 2.0) / 1.2);
}

// The Gauss rule in plain sums over the four points +-g, with strains from their definitions.
std::array<double, 144> SumRule(const QuadPlate& plate, double g) {
  std::array<double, 144> K{};
  const double rigidity = E * TK * TK * TK / 12.0 / (1.0 - Mu * Mu);
  const double shear = E / (2.0 * (1.0 + Mu)) * TK / 1.2;
  for (const double xi : {-g, g}) {
    for (const double eta : {-g, g}) {
      const std::array<double, 4> d = MapDerivatives(plate, xi, eta);
      const double det = Determinant(d);
      std::array<std::array<double, 12>, 3> k{};
      for (std::size_t n = 0; n < 4; ++n) {
        const double dXi = NodeXi[n] * (1.0 + NodeEta[n] * eta) / 4.0;
        const double dEta = NodeEta[n] * (1.0 + NodeXi[n] * xi) / 4.0;
        const double dx = (d[3] * dXi - d[1] * dEta) / det;
        const double dy = (d[0] * dEta - d[2] * dXi) / det;
        k[KX][3 * n + Ry] = dx;
        k[KY][3 * n + Rx] = -dy;
        k[KXY][3 * n + Rx] = -dx;
        k[KXY][3 * n + Ry] = dy;
      }
      const auto Bs = TieShearStrains(plate, xi, eta, Directions::OfTheMidLines);
      for (std::size_t i = 0; i < 12; ++i) {
        for (std::size_t j = 0; j < 12; ++j) {
          K[12 * i + j] +=
              std::fabs(det) * (rigidity * (k[KX][i] * k[KX][j] + k[KY][i] * k[KY][j] +
                                            Mu * (k[KX][i] * k[KY][j] + k[KY][i] * k[KX][j]) +
                                            (1.0 - Mu) / 2.0 * k[KXY][i] * k[KXY][j]) +
                                shear * (Bs[i] * Bs[j] + Bs[12 + i] * Bs[12 + j]));
        }
      }
    }
  }
  return K;
}

// 1e-13 is above the rounding and well below the 1e-11 that the exact abscissa would change.
TEST(QuadPlate, Rule) {
  for (const auto& named : test::AllQuads()) {
    const QuadPlate plate = MakePlate(named.shape);
    const auto K = StiffnessOf(plate);
    EXPECT_EQ(test::FindDifference(K, SumRule(plate, 0.5773502692), 1e-13), "") << named;
    EXPECT_NE(test::FindDifference(K, SumRule(plate, std::sqrt(1.0 / 3.0)), 1e-13), "") << named;
  }
}

// Where the determinant is negative its absolute value is integrated, so no eigenvalue is negative.
TEST(QuadPlate, BowTieIsIntegratedWithAbsoluteDeterminants) {
  const QuadPlate plate = MakePlate(test::BowTie);
  const auto K = StiffnessOf(plate);
  EXPECT_EQ(test::FindDifference(K, SumRule(plate, 0.5773502692), 1e-13), "");
  const auto eigenvalues = test::SymmetricEigenvalues({K.begin(), K.end()}, 12);
  EXPECT_GT(eigenvalues.front(), -1e-13 * eigenvalues.back());
}

// K = TK^3 bending + TK shear: both parts from two thicknesses, checked at a third.
// Bound: rounding.
TEST(QuadPlate, BendingGrowsWithTheCubeAndShearLinearly) {
  const auto one = StiffnessOf(MakePlate(test::DistortedQuad, 1.0));
  const auto two = StiffnessOf(MakePlate(test::DistortedQuad, 2.0));
  const auto four = StiffnessOf(MakePlate(test::DistortedQuad, 4.0));
  for (std::size_t i = 0; i < one.size(); ++i) {
    const double bending = (two[i] - 2.0 * one[i]) / 6.0;
    const double shear = one[i] - bending;
    EXPECT_NEAR(four[i], 64.0 * bending + 4.0 * shear, 1e-14 * test::LargestEntry(four)) << i;
  }
  // The deflections have no bending stiffness.
  for (std::size_t i = 0; i < 12; i += 3) {
    for (std::size_t j = 0; j < 12; j += 3) EXPECT_EQ(two[12 * i + j], 2.0 * one[12 * i + j]);
  }
}

}  // namespace
}  // namespace korvex
