// The triangle's in-plane part: the edge tractions of constant stresses, and the drilling penalty
// from its integration weights, by hand.
#include "shell/tri_membrane.h"

#include <gtest/gtest.h>

#include "support/shell_shapes.h"

namespace korvex {
namespace {

constexpr double E = test::ShapeE, Mu = test::ShapeMu, TK = test::ShapeTK;
// Dofs of a node of the in-plane part; the membrane alone has u and v.
enum InPlaneDof : std::size_t { U, V, Drilling };
enum Strain : std::size_t { EXX, EYY, GXY };

constexpr test::PlaneShape<3> RightTriangle{{{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}};

TriMembrane MakeMembrane(const test::PlaneShape<3>& shape) {
  return test::SetUpShape<TriMembrane>(shape, E, Mu, TK);
}

std::array<double, 36> MembraneOf(const TriMembrane& membrane) {
  std::array<double, 36> K;
  K.fill(-7.0);  // the caller's buffer is not clean; every entry must be written
  membrane.MembraneStiffness(K.data());
  return K;
}

std::array<double, 81> DrillingOf(const TriMembrane& membrane) {
  std::array<double, 81> K;
  K.fill(-7.0);
  membrane.DrillingStiffness(K.data());
  return K;
}

std::array<double, 81> StiffnessOf(TriMembrane membrane) {
  membrane.K.fill(-7.0);
  membrane.Stiffness();
  return membrane.K;
}

TEST(TriMembrane, InitSetsTheCounts) {
  TriMembrane membrane;
  membrane.Init();
  EXPECT_EQ(membrane.nodes, 3);
  EXPECT_EQ(membrane.membraneDofs, 6);
  EXPECT_EQ(membrane.dofs, 9);
  EXPECT_EQ(membrane.strains, 3);
}

// N = 1 - x - y, x, y, and 2A = 1: the rows are the plain differences.
TEST(TriMembrane, StrainMatrixOfTheUnitRightTriangle) {
  std::array<double, 18> B{};
  MakeMembrane(RightTriangle).StrainMatrix(B.data());
  EXPECT_EQ(B, (std::array<double, 18>{-1.0, 0.0, 1.0, 0.0, 0.0, 0.0,  //
                                       0.0, -1.0, 0.0, 0.0, 0.0, 1.0,  //
                                       -1.0, -1.0, 0.0, 1.0, 1.0, 0.0}));
}

// u = 2 x + 3 y, v = 5 x + 7 y: exx = 2, eyy = 7, gxy = 8.
TEST(TriMembrane, StrainsOfALinearField) {
  for (const auto& named : test::AllTriangles()) {
    const TriMembrane membrane = MakeMembrane(named.shape);
    std::array<double, 18> B{};
    membrane.StrainMatrix(B.data());
    std::array<double, 3> strain{};
    for (std::size_t k = 0; k < 3; ++k) {
      const double x = membrane.x[k], y = membrane.y[k];
      for (std::size_t i = 0; i < 3; ++i)
        strain[i] +=
            B[6 * i + 2 * k + U] * (2.0 * x + 3.0 * y) + B[6 * i + 2 * k + V] * (5.0 * x + 7.0 * y);
    }
    EXPECT_NEAR(strain[EXX], 2.0, 1e-13) << named;  // rounding of numbers up to some 40
    EXPECT_NEAR(strain[EYY], 7.0, 1e-13) << named;
    EXPECT_NEAR(strain[GXY], 8.0, 1e-13) << named;
  }
}

// A constant stress needs the nodal forces of its tractions on the edges, half at each end: with an
// edge from i to j its outward normal times its length is (yj - yi, -(xj - xi)). The three strains
// and the three rigid motions span all displacements, so they fix the matrix.
TEST(TriMembrane, ConstantStressesNeedTheirEdgeTractions) {
  const double p = E / (1.0 - Mu * Mu), G = E / (2.0 * (1.0 + Mu));
  for (const auto& named : test::AllTriangles()) {
    const TriMembrane membrane = MakeMembrane(named.shape);
    const auto K = MembraneOf(membrane);
    // ux, uy, vx, vy of u = ux x + uy y, v = vx x + vy y; the last is a rotation.
    for (const std::array<double, 4>& gradient :
         {std::array<double, 4>{1.0, 0.0, 0.0, 0.0}, std::array<double, 4>{0.0, 0.0, 0.0, 1.0},
          std::array<double, 4>{0.0, 1.0, 0.0, 0.0}, std::array<double, 4>{0.0, -1.0, 1.0, 0.0}}) {
      const auto& [ux, uy, vx, vy] = gradient;
      const double sx = p * (ux + Mu * vy), sy = p * (vy + Mu * ux), t = G * (uy + vx);
      std::array<double, 6> d{}, expected{};
      for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        d[2 * i + U] = ux * membrane.x[i] + uy * membrane.y[i];
        d[2 * i + V] = vx * membrane.x[i] + vy * membrane.y[i];
        const double nx = membrane.y[j] - membrane.y[i], ny = membrane.x[i] - membrane.x[j];
        for (const std::size_t k : {i, j}) {
          expected[2 * k + U] += TK * (sx * nx + t * ny) / 2.0;
          expected[2 * k + V] += TK * (t * nx + sy * ny) / 2.0;
        }
      }
      for (std::size_t i = 0; i < 6; ++i) {
        double force = 0.0;
        for (std::size_t j = 0; j < 6; ++j) force += K[6 * i + j] * d[j];
        // Rounding of terms as large as the entries times the coordinates.
        EXPECT_NEAR(force, expected[i], 1e-14 * test::LargestEntry(K)) << named << " dof " << i;
      }
    }
    for (std::size_t i = 0; i < 6; ++i) {  // translations
      for (const InPlaneDof d : {U, V}) {
        const double force = K[6 * i + d] + K[6 * i + 2 + d] + K[6 * i + 4 + d];
        EXPECT_NEAR(force, 0.0, 1e-15 * test::LargestEntry(K)) << named << " dof " << i;
      }
    }
  }
}

// The penalty's row is (dNk/dy / 2, -dNk/dx / 2, Nk), its weights 9/16 at the centroid and three
// times 25/48: the sum of the weights is 17/8; of w Lk it is a third of that; of w Lk^2 it is
// 1/16 + 25/48 (0.36 + 0.04 + 0.04) = 7/24, of w Lj Lk 1/16 + 25/48 (0.12 + 0.12 + 0.04) = 5/24.
// With the cubic rule's -9/16 these would be 1, 1/3, 1/6 and 1/12. The penalty is ten times the
// shear modulus.
TEST(TriMembrane, DrillingPenaltyHasItsWeights) {
  for (const auto& named : test::AllTriangles()) {
    const TriMembrane membrane = MakeMembrane(named.shape);
    const Array3 &x = membrane.x, &y = membrane.y;
    const double twiceA = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
    const double scale = 10.0 * TK * E / (2.0 * (1.0 + Mu)) * twiceA / 2.0;
    std::array<std::array<double, 3>, 3> row{};  // per node: of u, v, and of the drilling 1
    for (std::size_t k = 0; k < 3; ++k) {
      const std::size_t i = (k + 1) % 3, j = (k + 2) % 3;
      row[k] = {(x[j] - x[i]) / twiceA / 2.0, -(y[i] - y[j]) / twiceA / 2.0, 1.0};
    }
    std::array<double, 81> expected{};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) {
        for (std::size_t r = 0; r < 3; ++r) {
          for (std::size_t c = 0; c < 3; ++c) {
            double weight = 17.0 / 8.0;
            if (r == Drilling) weight /= 3.0;
            if (c == Drilling) weight /= 3.0;
            if (r == Drilling && c == Drilling) weight = (i == j ? 7.0 : 5.0) / 24.0;
            expected[9 * (3 * i + r) + 3 * j + c] = scale * weight * row[i][r] * row[j][c];
          }
        }
      }
    }
    EXPECT_EQ(test::FindDifference(DrillingOf(membrane), expected, 1e-14), "")
        << named;  // rounding
  }
}

// The area coordinates are computed from the point's position, so the triangle's position changes
// the last bits alone.
TEST(TriMembrane, PositionDoesNotMatter) {
  TriMembrane membrane = MakeMembrane(test::ScaleneTriangle);
  const auto K = StiffnessOf(membrane);
  for (std::size_t k = 0; k < 3; ++k) {
    membrane.x[k] += 8.0;
    membrane.y[k] -= 4.0;
  }
  EXPECT_EQ(test::FindDifference(StiffnessOf(membrane), K, 1e-13), "");  // products up to 100
}

}  // namespace
}  // namespace korvex
