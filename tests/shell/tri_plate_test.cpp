// The triangle's bending part against the explicit rotation functions of Batoz, Bathe & Ho (1980)
// and against fields of constant curvature.
#include "shell/tri_plate.h"

#include <gtest/gtest.h>

#include "support/shell_shapes.h"

namespace korvex {
namespace {

constexpr double E = test::ShapeE, Mu = test::ShapeMu, TK = test::ShapeTK;
// Dofs of a node and curvatures of the bending part.
enum PlateDof : std::size_t { W, Rx, Ry };
enum Curvature : std::size_t { KX, KY, KXY };

constexpr std::array<Array3, 5> Points{
    {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}, {0.5, 0.0, 0.5}, {0.2, 0.5, 0.3}}};

TriPlate MakePlate(const test::PlaneShape<3>& shape, double thickness = TK) {
  return test::SetUpShape<TriPlate>(shape, E, Mu, thickness);
}

using Curvatures = std::array<double, 27>;  // 3 x 9

Curvatures CurvaturesOf(const TriPlate& plate, const Array3& L) {
  Curvatures Bb;
  Bb.fill(-7.0);  // the caller's buffer is not clean; every entry must be written
  plate.CurvatureMatrix(L, Bb.data());
  return Bb;
}

std::array<double, 81> StiffnessOf(TriPlate plate) {
  plate.K.fill(-7.0);  // the sum starts at zero, whatever was there
  plate.Stiffness();
  return plate.K;
}

TEST(TriPlate, InitSetsTheCounts) {
  TriPlate plate;
  plate.Init();
  EXPECT_EQ(plate.nodes, 3);
  EXPECT_EQ(plate.dofs, 9);
}

// The rotation functions of the paper: bx = Hx . U and by = Hy . U with U = (w, thx, thy) per node,
// thx = dw/dy, thy = -dw/dx, bx = -dw/dx, by = -dw/dy; r and s are the coordinates of nodes 2
// and 3. Its sides 4, 5, 6 are 2-3, 3-1, 1-2.
struct RotationFunctions {
  std::array<double, 9> Hx, Hy;
};

RotationFunctions BatozFunctions(const TriPlate& plate, double r, double s) {
  std::array<double, 7> a{}, b{}, c{}, d{}, e{}, N{};  // by side, 4 to 6; N 1 to 6
  for (std::size_t k = 4; k <= 6; ++k) {
    const std::size_t i = (k - 3) % 3, j = (k - 2) % 3;
    const double x = plate.x[i] - plate.x[j], y = plate.y[i] - plate.y[j];
    const double l2 = x * x + y * y;
    a[k] = -x / l2;
    b[k] = 0.75 * x * y / l2;
    c[k] = (0.25 * x * x - 0.5 * y * y) / l2;
    d[k] = -y / l2;
    e[k] = (0.25 * y * y - 0.5 * x * x) / l2;
  }
  N[1] = 2.0 * (1.0 - r - s) * (0.5 - r - s);
  N[2] = r * (2.0 * r - 1.0);
  N[3] = s * (2.0 * s - 1.0);
  N[4] = 4.0 * r * s;
  N[5] = 4.0 * s * (1.0 - r - s);
  N[6] = 4.0 * r * (1.0 - r - s);
  RotationFunctions H{};
  constexpr std::array<std::array<std::size_t, 2>, 3> sides{{{6, 5}, {4, 6}, {5, 4}}};
  for (std::size_t k = 0; k < 3; ++k) {
    const auto& [p, q] = sides[k];
    H.Hx[3 * k + W] = 1.5 * (a[p] * N[p] - a[q] * N[q]);
    H.Hx[3 * k + Rx] = b[q] * N[q] + b[p] * N[p];
    H.Hx[3 * k + Ry] = N[k + 1] - c[q] * N[q] - c[p] * N[p];
    H.Hy[3 * k + W] = 1.5 * (d[p] * N[p] - d[q] * N[q]);
    H.Hy[3 * k + Rx] = -N[k + 1] + e[q] * N[q] + e[p] * N[p];
    H.Hy[3 * k + Ry] = -H.Hx[3 * k + Rx];
  }
  return H;
}

// kx = dbx/dx, ky = dby/dy, kxy = dbx/dy + dby/dx. The functions are quadratic: central differences
// are exact, for any step.
Curvatures BatozCurvatures(const TriPlate& plate, const Array3& L) {
  const double r = L[1], s = L[2], step = 0.5;
  const RotationFunctions right = BatozFunctions(plate, r + step, s);
  const RotationFunctions left = BatozFunctions(plate, r - step, s);
  const RotationFunctions above = BatozFunctions(plate, r, s + step);
  const RotationFunctions below = BatozFunctions(plate, r, s - step);
  const double x21 = plate.x[1] - plate.x[0], y21 = plate.y[1] - plate.y[0];
  const double x31 = plate.x[2] - plate.x[0], y31 = plate.y[2] - plate.y[0];
  const double det = x21 * y31 - x31 * y21;
  Curvatures Bb{};
  for (std::size_t i = 0; i < 9; ++i) {
    const double bxR = right.Hx[i] - left.Hx[i], bxS = above.Hx[i] - below.Hx[i];
    const double byR = right.Hy[i] - left.Hy[i], byS = above.Hy[i] - below.Hy[i];
    Bb[9 * KX + i] = (y31 * bxR - y21 * bxS) / det;
    Bb[9 * KY + i] = (x21 * byS - x31 * byR) / det;
    Bb[9 * KXY + i] = (x21 * bxS - x31 * bxR + y31 * byR - y21 * byS) / det;
  }
  return Bb;
}

TEST(TriPlate, CurvaturesAreThoseOfTheExplicitFunctions) {
  for (const auto& named : test::AllTriangles()) {
    const TriPlate plate = MakePlate(named.shape);
    for (const Array3& L : Points) {
      EXPECT_EQ(test::FindDifference(CurvaturesOf(plate, L), BatozCurvatures(plate, L), 1e-14), "")
          << named << " at " << L[0] << ", " << L[1] << ", " << L[2];  // rounding
    }
  }
}

// The curvatures are linear and their squares quadratic, so three points inside integrate them as
// exactly as those at the mid-sides: weights 1/3 at (2/3, 1/6, 1/6) and its permutations.
TEST(TriPlate, StiffnessIntegratesTheCurvatures) {
  const double rigidity = E * TK * TK * TK / 12.0 / (1.0 - Mu * Mu);
  for (const auto& named : test::AllTriangles()) {
    const TriPlate plate = MakePlate(named.shape);
    const double area = test::IntegrateMonomial(named.shape, 0, 0);
    std::array<double, 81> expected{};
    for (std::size_t point = 0; point < 3; ++point) {
      Array3 L{1.0 / 6.0, 1.0 / 6.0, 1.0 / 6.0};
      L[point] = 2.0 / 3.0;
      const Curvatures B = BatozCurvatures(plate, L);
      for (std::size_t i = 0; i < 9; ++i) {
        for (std::size_t j = 0; j < 9; ++j) {
          expected[9 * i + j] +=
              rigidity * area / 3.0 *
              (B[9 * KX + i] * B[9 * KX + j] + B[9 * KY + i] * B[9 * KY + j] +
               Mu * (B[9 * KX + i] * B[9 * KY + j] + B[9 * KY + i] * B[9 * KX + j]) +
               (1.0 - Mu) / 2.0 * B[9 * KXY + i] * B[9 * KXY + j]);
        }
      }
    }
    EXPECT_EQ(test::FindDifference(StiffnessOf(plate), expected, 1e-13), "") << named;  // rounding
  }
}

// w = -(p x^2 + q y^2 + 2 r x y) / 2 plus a rigid motion: the curvatures are p, q and 2 r
// everywhere.
TEST(TriPlate, ConstantCurvatureIsExact) {
  const double p = 0.5, q = -0.75, r = 0.375;
  for (const auto& named : test::AllTriangles()) {
    const TriPlate plate = MakePlate(named.shape);
    std::array<double, 9> d{};
    for (std::size_t k = 0; k < 3; ++k) {
      const double x = plate.x[k], y = plate.y[k];
      d[3 * k + W] = -(p * x * x + q * y * y + 2.0 * r * x * y) / 2.0 + 0.25 - 0.5 * x + 2.0 * y;
      d[3 * k + Rx] = -(q * y + r * x) + 2.0;  // rx = dw/dy
      d[3 * k + Ry] = p * x + r * y + 0.5;     // ry = -dw/dx
    }
    for (const Array3& L : Points) {
      const Curvatures Bb = CurvaturesOf(plate, L);
      std::array<double, 3> curvature{};
      for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 9; ++j) curvature[i] += Bb[9 * i + j] * d[j];
      }
      EXPECT_NEAR(curvature[KX], p, 1e-13) << named;  // rounding of terms up to some 100
      EXPECT_NEAR(curvature[KY], q, 1e-13) << named;
      EXPECT_NEAR(curvature[KXY], 2.0 * r, 1e-13) << named;
    }
  }
}

// Doubling is exact in binary, and so is the factor eight.
TEST(TriPlate, GrowsWithTheCubeOfTheThickness) {
  const auto once = StiffnessOf(MakePlate(test::ScaleneTriangle, TK));
  const auto twice = StiffnessOf(MakePlate(test::ScaleneTriangle, 2.0 * TK));
  for (std::size_t i = 0; i < once.size(); ++i) EXPECT_EQ(twice[i], 8.0 * once[i]) << i;
}

}  // namespace
}  // namespace korvex
