// The stresses of one element: fields of known strain and curvature in any plane, both faces, and
// the rotation of stresses into global axes.
#include "results/corner_stress.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/dof_names.h"
#include "support/shell_shapes.h"

namespace korvex {
namespace {

using test::Equation, test::Uz, test::Ry, test::Rz;
using test::SX, test::SY, test::SZ, test::TXY, test::TXZ, test::TYZ;

constexpr double E = test::ShapeE, Mu = test::ShapeMu, TK = test::ShapeTK;
constexpr std::array<double, 4> CornerXi{-1.0, 1.0, 1.0, -1.0};
constexpr std::array<double, 4> CornerEta{-1.0, -1.0, 1.0, 1.0};
constexpr std::array<std::array<double, 3>, 3> CornerL{
    {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};

template <std::int32_t Nodes>
using Displacements = std::array<double, static_cast<std::size_t>(Nodes) * 6>;

struct Faces {
  StressVector top, bottom;
};

// At corner k.
Faces StressOf(const Shell4Element& element, const Displacements<4>& d, std::size_t k) {
  Faces faces{};
  faces.top.fill(-7.0);  // the caller's vectors are not clean; every entry must be written
  faces.bottom.fill(-7.0);
  Shell4CornerStress(element, faces.top, faces.bottom, d.data(), CornerXi[k], CornerEta[k]);
  return faces;
}

Faces StressOf(const Shell3Element& element, const Displacements<3>& d, std::size_t k) {
  Faces faces{};
  faces.top.fill(-7.0);
  faces.bottom.fill(-7.0);
  Shell3CornerStress(element, faces.top, faces.bottom, d.data(), CornerL[k]);
  return faces;
}

// SX, SY, SZ, TXY, TXZ, TYZ of R sigma R^T, as products of full matrices.
StressVector MultiplyOut(const ElementFrame& R, const StressVector& s) {
  const double sigma[3][3] = {
      {s[SX], s[TXY], s[TXZ]}, {s[TXY], s[SY], s[TYZ]}, {s[TXZ], s[TYZ], s[SZ]}};
  double global[3][3] = {};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      for (std::size_t p = 0; p < 3; ++p) {
        for (std::size_t q = 0; q < 3; ++q)
          global[i][j] += R[3 * i + p] * sigma[p][q] * R[3 * j + q];
      }
    }
  }
  return {global[0][0], global[1][1], global[2][2], global[0][1], global[0][2], global[1][2]};
}

void ExpectStress(const StressVector& stress, const StressVector& expected, double bound,
                  const std::string& name) {
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_NEAR(stress[i], expected[i], bound) << name << ' ' << i;
}

// In local axes, from the strains at a height over the middle plane (Hooke's law in plane stress).
StressVector PlaneStress(double exx, double eyy, double gxy) {
  const double p = E / (1.0 - Mu * Mu);
  return {p * (exx + Mu * eyy), p * (eyy + Mu * exx), 0.0, E / (2.0 * (1.0 + Mu)) * gxy, 0.0, 0.0};
}

// Calls test(faces, name) for both kinds of elements at all shapes and corners in an oblique plane,
// under a field in the shape's axes.
template <typename Field, typename Test>
void ForAllCorners(const Field& field, const Test& test) {
  const auto& placement = test::InObliquePlane;
  for (const auto& named : test::AllQuads()) {
    const auto element = test::PlaceShape(named.shape, placement);
    const auto d = test::DisplaceNodes(named.shape, placement, field);
    for (std::size_t k = 0; k < 4; ++k) test(StressOf(element, d, k), named.name);
  }
  for (const auto& named : test::AllTriangles()) {
    const auto element = test::PlaceShape(named.shape, placement);
    const auto d = test::DisplaceNodes(named.shape, placement, field);
    for (std::size_t k = 0; k < 3; ++k) test(StressOf(element, d, k), named.name);
  }
}

// u = 0.002 x + 0.001 y, v = 0.003 x - 0.004 y, and any drilling.
std::array<double, 6> Stretch(double x, double y) {
  return {0.002 * x + 0.001 * y, 0.003 * x - 0.004 * y, 0.0, 0.0, 0.0, 0.01 * x - 0.02};
}

// w = -(0.02 x^2 - 0.03 y^2 + 2 * 0.01 x y) / 2: rx = dw/dy, ry = -dw/dx.
std::array<double, 6> Bend(double x, double y) {
  return {0.0,
          0.0,
          -(0.02 * x * x - 0.03 * y * y + 0.02 * x * y) / 2.0,
          0.03 * y - 0.01 * x,
          0.02 * x + 0.01 * y,
          0.0};
}

// 1e-13, and 1e-12 where bending enters: rounding of stresses of about 1.
TEST(CornerStress, MembraneStrainGivesEqualFaces) {
  const StressVector expected =
      MultiplyOut(test::InObliquePlane.axes, PlaneStress(0.002, -0.004, 0.004));
  ForAllCorners(Stretch, [&expected](const Faces& faces, const std::string& name) {
    ExpectStress(faces.bottom, faces.top, 1e-13, name);
    ExpectStress(faces.top, expected, 1e-13, name);
  });
}

// At the height z the strains are z times the curvatures -d2w/dx2, -d2w/dy2 and -2 d2w/dxdy; the
// upper face is the one toward e3, z = TK / 2.
TEST(CornerStress, BendingGivesOppositeFaces) {
  const double z = TK / 2.0;
  const StressVector expected =
      MultiplyOut(test::InObliquePlane.axes, PlaneStress(z * 0.02, z * -0.03, z * 0.02));
  ForAllCorners(Bend, [&expected](const Faces& faces, const std::string& name) {
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(faces.top[i], -faces.bottom[i], 1e-12) << name;
    ExpectStress(faces.top, expected, 1e-12, name);
  });
}

// The moment is divided by the thickness twice, not by its square: the last bits differ.
// With E = 12 and Mu = 0 the rigidity is TK^3, and the unit square under ry = x has the curvature
// 1: the stress is 6 TK^3 / TK / TK. Exact fractions, rounded after each division: 6 / 11 / 11
// comes out 5.6e-18 below 6 / 121 and 6 / 17 / 17 2.4e-18 above 6 / 289, and the products with 11^3
// and 17^3 miss 66 and 102 by their last digit. Dividing by the square gives 66 and 102.
TEST(CornerStress, ThicknessDividesTwice) {
  for (const auto& [thickness, stress] :
       {std::pair{11.0, 0x1.07fffffffffffp+6}, {17.0, 0x1.9800000000001p+6}}) {
    Shell4Element element = test::PlaceShape(test::UnitSquare, test::InGlobalPlane, thickness);
    element.E = 12.0;
    element.Mu = 0.0;
    const auto field = [](double x, double) { return std::array<double, 6>{0, 0, 0, 0, x, 0}; };
    const auto d = test::DisplaceNodes(test::UnitSquare, test::InGlobalPlane, field);
    for (std::size_t k = 0; k < 4; ++k) {
      EXPECT_EQ(StressOf(element, d, k).top[SX], stress) << k;
      EXPECT_EQ(StressOf(element, d, k).bottom[SX], -stress) << k;
    }
  }
}

TEST(CornerStress, MembraneAndBendingAdd) {
  const auto both = [](double x, double y) {
    std::array<double, 6> sum = Stretch(x, y);
    for (std::size_t i = 0; i < 6; ++i) sum[i] += Bend(x, y)[i];
    return sum;
  };
  const double z = TK / 2.0;
  const ElementFrame& R = test::InObliquePlane.axes;
  const StressVector top =
      MultiplyOut(R, PlaneStress(0.002 + z * 0.02, -0.004 - z * 0.03, 0.004 + z * 0.02));
  const StressVector bottom =
      MultiplyOut(R, PlaneStress(0.002 - z * 0.02, -0.004 + z * 0.03, 0.004 - z * 0.02));
  ForAllCorners(both, [&](const Faces& faces, const std::string& name) {
    ExpectStress(faces.top, top, 1e-12, name);
    ExpectStress(faces.bottom, bottom, 1e-12, name);
  });
}

TEST(CornerStress, RigidMotionsAreFreeOfStress) {
  const auto motion = [](double x, double y) {
    return std::array<double, 6>{0.1 - 0.03 * y, 0.2 + 0.03 * x, 0.3 - 0.02 * x + 0.01 * y,
                                 0.01,           0.02,           0.03};
  };
  ForAllCorners(motion, [](const Faces& faces, const std::string& name) {
    ExpectStress(faces.top, {}, 1e-12, name);
    ExpectStress(faces.bottom, {}, 1e-12, name);
  });
}

template <std::int32_t Nodes>
void ExpectNoStressOfDrilling(const ShellElement<Nodes>& element) {
  Displacements<Nodes> d{};
  for (std::size_t k = 0; k < Nodes; ++k) d[Equation(k, Rz)] = 1.0 + static_cast<double>(k);
  for (std::size_t k = 0; k < Nodes; ++k)
    EXPECT_EQ(StressOf(element, d, k).top, StressVector{}) << Nodes << " nodes, corner " << k;
}

TEST(CornerStress, DrillingRotationsDoNotEnter) {
  ExpectNoStressOfDrilling(test::PlaceShape(test::DistortedQuad, test::InGlobalPlane));
  ExpectNoStressOfDrilling(test::PlaceShape(test::ScaleneTriangle, test::InGlobalPlane));
}

template <std::int32_t Nodes>
void ExpectPlaneStress(const ShellElement<Nodes>& element) {
  Displacements<Nodes> d{};
  for (std::size_t i = 0; i < d.size(); ++i) d[i] = std::sin(static_cast<double>(i * i));
  for (std::size_t k = 0; k < Nodes; ++k) {
    SCOPED_TRACE(testing::Message() << Nodes << " nodes, corner " << k);
    const Faces faces = StressOf(element, d, k);
    for (const StressVector& stress : {faces.top, faces.bottom}) {
      for (const std::size_t across : {SZ, TXZ, TYZ}) EXPECT_EQ(stress[across], 0.0) << across;
      EXPECT_NE(stress[SX], 0.0);
    }
  }
}

// Any displacements; the local axes are the global ones.
TEST(CornerStress, ElementInTheGlobalPlaneHasNoStressAcrossIt) {
  ExpectPlaneStress(test::PlaceShape(test::DistortedQuad, test::InGlobalPlane));
  ExpectPlaneStress(test::PlaceShape(test::ScaleneTriangle, test::InGlobalPlane));
}

// u = x y / 100 on the unit square: exx = y / 100 and gxy = x / 100 at the corner itself, neither
// at the centre nor at an integration point.
TEST(CornerStress, QuadStressesAreThoseAtTheCorner) {
  const auto field = [](double x, double y) {
    return std::array<double, 6>{x * y / 100.0, 0.0, 0.0, 0.0, 0.0, 0.0};
  };
  const Shell4Element element = test::PlaceShape(test::UnitSquare, test::InGlobalPlane);
  const auto d = test::DisplaceNodes(test::UnitSquare, test::InGlobalPlane, field);
  for (std::size_t k = 0; k < 4; ++k) {
    const auto& [x, y] = test::UnitSquare[k];
    ExpectStress(StressOf(element, d, k).top, PlaneStress(y / 100.0, 0.0, x / 100.0), 1e-14, "");
  }
}

// The same for bending: ry = x y / 100 gives kx = y / 100 and kxy = x / 100.
TEST(CornerStress, QuadMomentsAreThoseAtTheCorner) {
  const auto field = [](double x, double y) {
    return std::array<double, 6>{0.0, 0.0, 0.0, 0.0, x * y / 100.0, 0.0};
  };
  const Shell4Element element = test::PlaceShape(test::UnitSquare, test::InGlobalPlane);
  const auto d = test::DisplaceNodes(test::UnitSquare, test::InGlobalPlane, field);
  const double z = TK / 2.0;
  for (std::size_t k = 0; k < 4; ++k) {
    const auto& [x, y] = test::UnitSquare[k];
    ExpectStress(StressOf(element, d, k).top, PlaneStress(z * y / 100.0, 0.0, z * x / 100.0), 1e-14,
                 "");
  }
}

// A triangle's moments are taken at the given point. For w = 1 at node 2 of (0, 0), (1, 0), (0, 1)
// the rotations are zero at the corners and, from the thin plate's condition along the edges,
// ry = -3/2 amid edge 1-2 and rx = ry = -3/4 amid edge 2-3: rx = -3 x y, ry = -6 x (1 - x - y)
// - 3 x y. So kx = -6 + 12 x + 3 y, ky = 3 x, kxy = 3 x + 3 y.
TEST(CornerStress, TriangleMomentsAreThoseAtThePoint) {
  const test::PlaneShape<3> shape{{{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}};
  const Shell3Element element = test::PlaceShape(shape, test::InGlobalPlane);
  Displacements<3> d{};
  d[Equation(1, Uz)] = 1.0;
  const double z = TK / 2.0;
  for (std::size_t k = 0; k < 3; ++k) {
    const auto& [x, y] = shape[k];
    ExpectStress(StressOf(element, d, k).top,
                 PlaneStress(z * (-6.0 + 12.0 * x + 3.0 * y), z * 3.0 * x, z * (3.0 * x + 3.0 * y)),
                 1e-12, "");  // stresses up to some 200
  }
}

// Clockwise nodes reverse the normal, and the upper and lower faces change places.
TEST(CornerStress, UpperFaceLiesTowardTheNormal) {
  const std::array<double, 12> up{0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 1.0, 1.0, 0.0, 0.0, 1.0, 0.0};
  const std::array<double, 12> down{0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 1.0, 1.0, 0.0, 1.0, 0.0, 0.0};
  const auto stressAtFirst = [](const std::array<double, 12>& coordinates) {
    Shell4Element element;
    SetGeometry(element, coordinates.data(), 4, E, Mu, TK);
    Displacements<4> d{};
    for (std::size_t k = 0; k < 4; ++k) {
      const double x = coordinates[3 * k];
      d[Equation(k, Uz)] = -x * x / 200.0;
      d[Equation(k, Ry)] = x / 100.0;  // -dw/dx: the side of global +Z stretches
    }
    return StressOf(element, d, 0);
  };
  const Faces upward = stressAtFirst(up), downward = stressAtFirst(down);
  EXPECT_GT(upward.top[SX], 0.0);
  EXPECT_LT(upward.bottom[SX], 0.0);
  ExpectStress(downward.bottom, upward.top, 1e-15, "");  // rounding of some 0.3
  ExpectStress(downward.top, upward.bottom, 1e-15, "");
}

// All components differ and the frame is not symmetric, so that a transposed frame or exchanged
// components would fail. Bound: rounding of numbers up to 17.
TEST(CornerStress, ToGlobalIsTheProductOfMatrices) {
  const StressVector local{2.0, -3.0, 5.0, 7.0, -11.0, 13.0};
  const ElementFrame& R = test::InObliquePlane.axes;
  const StressVector global = StressToGlobal(R, local);
  ExpectStress(global, MultiplyOut(R, local), 1e-14, "");

  // Trace, sum of the principal minors and determinant do not change.
  const auto invariants = [](const StressVector& s) {
    return std::array<double, 3>{s[SX] + s[SY] + s[SZ],
                                 s[SX] * s[SY] + s[SY] * s[SZ] + s[SZ] * s[SX] - s[TXY] * s[TXY] -
                                     s[TXZ] * s[TXZ] - s[TYZ] * s[TYZ],
                                 s[SX] * s[SY] * s[SZ] + 2.0 * s[TXY] * s[TXZ] * s[TYZ] -
                                     s[SX] * s[TYZ] * s[TYZ] - s[SY] * s[TXZ] * s[TXZ] -
                                     s[SZ] * s[TXY] * s[TXY]};
  };
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_NEAR(invariants(global)[i], invariants(local)[i], 1e-12) << i;  // numbers up to 3000
}

// A tension along e1 becomes s e1 e1^T, with the frame's first column.
TEST(CornerStress, TensionAlongTheFirstAxis) {
  const StressVector global =
      StressToGlobal(test::InObliquePlane.axes, {49.0, 0.0, 0.0, 0.0, 0.0, 0.0});
  ExpectStress(global, {9.0, 36.0, 4.0, 18.0, 6.0, 12.0}, 1e-14, "");  // e1 = (3, 6, 2) / 7
}

TEST(CornerStress, EquivalentStressOfKnownStates) {
  EXPECT_DOUBLE_EQ(EquivalentStress({-8.0, 0.0, 0.0, 0.0, 0.0, 0.0}), 8.0);
  EXPECT_DOUBLE_EQ(EquivalentStress({5.0, 5.0, 5.0, 0.0, 0.0, 0.0}), 0.0);
  for (const std::size_t component : {TXY, TXZ, TYZ}) {  // pure shear: sqrt(3) times it
    StressVector shear{};
    shear[component] = -2.0;
    EXPECT_DOUBLE_EQ(EquivalentStress(shear), 2.0 * std::sqrt(3.0));
  }
  // Turning does not change it.
  const StressVector local{2.0, -3.0, 5.0, 7.0, -11.0, 13.0};
  EXPECT_NEAR(EquivalentStress(StressToGlobal(test::InObliquePlane.axes, local)),
              EquivalentStress(local), 1e-13);  // rounding
}

TEST(CornerStress, OtherNodeCountIsIgnored) {
  const auto expectSame = [](auto element, const auto& d) {
    const Faces faces = StressOf(element, d, 1);
    element.NodeCount = 5;
    const Faces other = StressOf(element, d, 1);
    EXPECT_EQ(other.top, faces.top);
    EXPECT_EQ(other.bottom, faces.bottom);
  };
  const auto& placement = test::InObliquePlane;
  expectSame(test::PlaceShape(test::DistortedQuad, placement),
             test::DisplaceNodes(test::DistortedQuad, placement, Stretch));
  expectSame(test::PlaceShape(test::ScaleneTriangle, placement),
             test::DisplaceNodes(test::ScaleneTriangle, placement, Stretch));
}

}  // namespace
}  // namespace korvex
