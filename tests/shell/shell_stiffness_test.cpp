// The stiffness of the two shell elements: what their in-plane and bending parts have in common,
// how the parts come together, zero-energy modes, rigid motions, rotations in space, warp.
#include "shell/shell_stiffness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <type_traits>
#include <vector>

#include "shell/quad_membrane.h"
#include "shell/quad_plate.h"
#include "shell/tri_membrane.h"
#include "shell/tri_plate.h"
#include "support/dof_names.h"
#include "support/shell_shapes.h"
#include "support/symmetric_eigenvalues.h"

namespace korvex {
namespace {

using test::Dof, test::Ux, test::Uy, test::Uz, test::Rx, test::Ry, test::Rz;

using Matrix24 = std::array<double, 576>;
using Matrix18 = std::array<double, 324>;

Matrix24 StiffnessOf(const Shell4Element& element) {
  Matrix24 K;
  K.fill(-7.0);  // the caller's buffer is not clean; every entry must be written
  Shell4Stiffness(element, K.data());
  return K;
}

Matrix18 StiffnessOf(const Shell3Element& element) {
  Matrix18 K;
  K.fill(-7.0);
  Shell3Stiffness(element, K.data());
  return K;
}

template <typename Part, std::size_t Nodes>
Part MakePart(const test::PlaneShape<Nodes>& shape) {
  Part part = test::SetUpShape<Part>(shape, test::ShapeE, test::ShapeMu, test::ShapeTK);
  part.K.fill(-7.0);  // nothing that was there may remain
  part.Stiffness();
  return part;
}

// ---- The four parts -----------------------------------------------------------------------------

// Dofs per node of an in-plane part: u, v and the drilling rotation; of a bending part: w, rx, ry.
constexpr std::size_t PartDofsPerNode = 3;
constexpr std::size_t Drilling = 2;

template <typename Part>
constexpr std::size_t NodesOf = std::tuple_size<decltype(Part::x)>::value;

template <typename Part>
constexpr std::size_t DofsOf = PartDofsPerNode* NodesOf<Part>;

// The shapes of the part's element.
template <typename Part>
auto AllShapesOf() {
  if constexpr (NodesOf<Part> == 4) {
    return test::AllQuads();
  } else {
    return test::AllTriangles();
  }
}

// A shape without symmetry.
template <typename Part>
auto UnevenShapeOf() {
  if constexpr (NodesOf<Part> == 4) {
    return test::DistortedQuad;
  } else {
    return test::ScaleneTriangle;
  }
}

struct NamePart {
  template <typename Part>
  static std::string GetName(int) {
    if (std::is_same<Part, QuadMembrane>::value) return "QuadMembrane";
    if (std::is_same<Part, QuadPlate>::value) return "QuadPlate";
    if (std::is_same<Part, TriMembrane>::value) return "TriMembrane";
    return "TriPlate";
  }
};

template <typename Part>
class ShellPart : public testing::Test {};

using AllParts = testing::Types<QuadMembrane, QuadPlate, TriMembrane, TriPlate>;
TYPED_TEST_SUITE(ShellPart, AllParts, NamePart);

TYPED_TEST(ShellPart, SymmetricToRounding) {
  constexpr std::size_t n = DofsOf<TypeParam>;
  const auto K = MakePart<TypeParam>(UnevenShapeOf<TypeParam>()).K;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_NEAR(K[n * i + j], K[n * j + i], 1e-15 * test::LargestEntry(K));
  }
}

// In the plane two translations and the rotation; across it the deflection and two rotations. The
// fourth eigenvalue is small where an element is slender: least of all in the in-plane part of
// quadrilaterals, most in the bending part of triangles.
TYPED_TEST(ShellPart, ThreeZeroEnergyModes) {
  double smallest = 1e-4;
  if (std::is_same<TypeParam, QuadMembrane>::value) smallest = 1e-3;
  if (std::is_same<TypeParam, TriPlate>::value) smallest = 1e-5;
  for (const auto& named : AllShapesOf<TypeParam>()) {
    const auto K = MakePart<TypeParam>(named.shape).K;
    const auto eigenvalues = test::SymmetricEigenvalues({K.begin(), K.end()}, DofsOf<TypeParam>);
    EXPECT_LT(std::fabs(eigenvalues[0]), 1e-13 * eigenvalues.back()) << named;  // rounding
    EXPECT_LT(std::fabs(eigenvalues[2]), 1e-13 * eigenvalues.back()) << named;
    EXPECT_GT(eigenvalues[3], smallest * eigenvalues.back()) << named;
  }
}

// ---- The two in-plane parts ---------------------------------------------------------------------

template <typename Membrane>
std::vector<double> MembraneOf(Membrane membrane) {
  constexpr std::size_t n = 2 * NodesOf<Membrane>;  // u, v per node
  std::vector<double> K(n * n, -7.0);
  membrane.MembraneStiffness(K.data());
  return K;
}

template <typename Membrane>
std::vector<double> DrillingOf(Membrane membrane) {
  std::vector<double> K(DofsOf<Membrane> * DofsOf<Membrane>, -7.0);
  membrane.DrillingStiffness(K.data());
  return K;
}

template <typename Membrane>
class ShellMembrane : public testing::Test {};

using BothMembranes = testing::Types<QuadMembrane, TriMembrane>;
TYPED_TEST_SUITE(ShellMembrane, BothMembranes, NamePart);

TYPED_TEST(ShellMembrane, RigidRotationWithItsDrillingNeedsNoForce) {
  constexpr std::size_t n = DofsOf<TypeParam>;
  const double theta = 0.125;
  for (const auto& named : AllShapesOf<TypeParam>()) {
    const auto membrane = MakePart<TypeParam>(named.shape);
    const auto K = DrillingOf(membrane);
    for (std::size_t i = 0; i < n; ++i) {
      double force = 0.0, size = 0.0;
      for (std::size_t k = 0; k < NodesOf<TypeParam>; ++k) {
        const std::array<double, 3> d{-theta * membrane.y[k], theta * membrane.x[k], theta};
        for (std::size_t j = 0; j < 3; ++j) {
          const double term = K[n * i + PartDofsPerNode * k + j] * d[j];
          force += term;
          size += std::fabs(term);
        }
      }
      EXPECT_NEAR(force, 0.0, 1e-14 * size) << named << " dof " << i;  // rounding of the terms
    }
  }
}

// Doubling is exact in binary.
TYPED_TEST(ShellMembrane, GrowsLinearlyWithTheThickness) {
  auto membrane = MakePart<TypeParam>(UnevenShapeOf<TypeParam>());
  const auto once = membrane.K;
  membrane.TK *= 2.0;
  membrane.Stiffness();
  for (std::size_t i = 0; i < once.size(); ++i) EXPECT_EQ(membrane.K[i], 2.0 * once[i]) << i;
}

// The penalty alone holds a node against drilling where only shells meet.
TYPED_TEST(ShellMembrane, StiffnessIsTheMembranePlusTheDrillingPenalty) {
  constexpr std::size_t nodes = NodesOf<TypeParam>, n = DofsOf<TypeParam>;
  const auto membrane = MakePart<TypeParam>(UnevenShapeOf<TypeParam>());
  const auto penalty = DrillingOf(membrane);
  const auto plane = MembraneOf(membrane);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      const std::size_t nodeI = i / 3, dofI = i % 3, nodeJ = j / 3, dofJ = j % 3;
      const bool both = dofI != Drilling && dofJ != Drilling;
      const double membranePart =
          both ? plane[2 * nodes * (2 * nodeI + dofI) + 2 * nodeJ + dofJ] : 0.0;
      EXPECT_EQ(membrane.K[n * i + j], penalty[n * i + j] + membranePart) << i << ' ' << j;
    }
  }
  for (std::size_t k = 0; k < nodes; ++k) {
    const std::size_t drilling = 3 * k + Drilling;
    EXPECT_GT(membrane.K[n * drilling + drilling], 0.0) << k;
  }
}

// All nodes on a line.
TYPED_TEST(ShellMembrane, ElementWithoutAreaIsNotFinite) {
  test::PlaneShape<NodesOf<TypeParam>> line{};
  for (std::size_t k = 0; k < line.size(); ++k) line[k] = {static_cast<double>(k), 0.0};
  EXPECT_FALSE(std::isfinite(MakePart<TypeParam>(line).K[0]));
}

// ---- The two elements ---------------------------------------------------------------------------

// A shape in the global X-Y plane has the global axes as its own, so that the parts' matrices stand
// in the element's as they are. Nothing couples the two.
template <typename Membrane, typename Plate, std::size_t Nodes>
void ExpectPartsInPlace(const test::PlaneShape<Nodes>& shape) {
  const auto element = test::PlaceShape(shape, test::InGlobalPlane);
  const Membrane membrane = MakePart<Membrane>(shape);
  const Plate plate = MakePart<Plate>(shape);
  const auto K = StiffnessOf(element);
  constexpr std::array<Dof, 3> inPlane{Ux, Uy, Rz}, bending{Uz, Rx, Ry};  // the parts' orders
  std::array<double, 36 * Nodes * Nodes> expected{};
  for (std::size_t i = 0; i < 3 * Nodes; ++i) {
    for (std::size_t j = 0; j < 3 * Nodes; ++j) {
      const auto entry = [i, j](const std::array<Dof, 3>& dofs) {
        return 6 * Nodes * test::Equation(i / 3, dofs[i % 3]) + test::Equation(j / 3, dofs[j % 3]);
      };
      expected[entry(inPlane)] = membrane.K[3 * Nodes * i + j];
      expected[entry(bending)] = plate.K[3 * Nodes * i + j];
    }
  }
  for (std::size_t i = 0; i < K.size(); ++i)
    EXPECT_EQ(K[i], expected[i]) << "row " << i / (6 * Nodes) << " column " << i % (6 * Nodes);
}

TEST(ShellStiffness, RectangleInTheGlobalPlaneHasItsLocalStiffness) {
  ExpectPartsInPlace<QuadMembrane, QuadPlate, 4>(
      {{{0.0, 0.0}, {3.0, 0.0}, {3.0, 1.25}, {0.0, 1.25}}});
}

TEST(ShellStiffness, TriangleInTheGlobalPlaneHasItsLocalStiffness) {
  ExpectPartsInPlace<TriMembrane, TriPlate, 3>({{{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}});
}

// Calls test(element, name) for both kinds of elements at all shapes.
template <typename Test>
void ForAllShapes(const test::Placement& placement, const Test& test) {
  for (const auto& named : test::AllQuads())
    test(test::PlaceShape(named.shape, placement), named.name);
  for (const auto& named : test::AllTriangles())
    test(test::PlaceShape(named.shape, placement), named.name);
}

TEST(ShellStiffness, SymmetricToRounding) {
  ForAllShapes(test::InObliquePlane, [](const auto& element, const std::string& name) {
    const auto K = StiffnessOf(element);
    const auto n = static_cast<std::size_t>(element.ElementDofs);
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < i; ++j)
        EXPECT_NEAR(K[n * i + j], K[n * j + i], 1e-15 * test::LargestEntry(K)) << name;
    }
  });
}

// The six motions of a rigid body and no more: rank 18 of 24 and 12 of 18.
TEST(ShellStiffness, ExactlySixZeroEnergyModes) {
  for (const auto& placement : {test::InGlobalPlane, test::InObliquePlane}) {
    ForAllShapes(placement, [](const auto& element, const std::string& name) {
      const auto K = StiffnessOf(element);
      const auto n = static_cast<std::size_t>(element.ElementDofs);
      const auto eigenvalues = test::SymmetricEigenvalues({K.begin(), K.end()}, n);
      for (std::size_t i = 0; i < 6; ++i)
        EXPECT_LT(std::fabs(eigenvalues[i]), 1e-13 * eigenvalues.back()) << name;  // rounding
      EXPECT_GT(eigenvalues[6], 1e-6 * eigenvalues.back()) << name;
    });
  }
}

// Three translations and three rotations about an arbitrary centre. The rotation about the normal
// needs no force because the drilling rotations follow it.
TEST(ShellStiffness, RigidMotionsNeedNoForce) {
  const Vector3 centre{1.0, -2.0, 0.5};
  ForAllShapes(test::InObliquePlane, [&centre](const auto& element, const std::string& name) {
    const auto K = StiffnessOf(element);
    const auto n = static_cast<std::size_t>(element.ElementDofs);
    for (std::size_t motion = 0; motion < 6; ++motion) {
      Vector3 translation{}, rotation{};
      (motion < 3 ? translation : rotation)[motion % 3] = 1.0;
      std::vector<double> d;
      for (std::size_t k = 0; k < n / 6; ++k) {
        const Vector3 position{element.Coordinates[3 * k], element.Coordinates[3 * k + 1],
                               element.Coordinates[3 * k + 2]};
        const Vector3 turned = Cross(rotation, Subtract(position, centre));
        for (std::size_t i = 0; i < 3; ++i) d.push_back(translation[i] + turned[i]);
        d.insert(d.end(), rotation.begin(), rotation.end());
      }
      for (std::size_t i = 0; i < n; ++i) {
        double force = 0.0;
        for (std::size_t j = 0; j < n; ++j) force += K[n * i + j] * d[j];
        // Rounding of terms up to ten times the largest entry.
        EXPECT_NEAR(force, 0.0, 1e-13 * test::LargestEntry(K)) << name << " motion " << motion;
      }
    }
  });
}

// Turning an element turns its forces and displacements: K' = T K T^T, with the rotation R in each
// 3 x 3 block on the diagonal of T.
template <std::size_t Nodes>
void ExpectTurnedStiffness(const test::NamedShape<Nodes>& named) {
  const auto flat = StiffnessOf(test::PlaceShape(named.shape, test::InGlobalPlane));
  const auto turned = StiffnessOf(test::PlaceShape(named.shape, test::InObliquePlane));
  const ElementFrame& R = test::InObliquePlane.axes;
  std::vector<double> expected(flat.size(), 0.0);
  constexpr std::size_t n = 6 * Nodes;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t p = 0; p < 3; ++p) {
        for (std::size_t q = 0; q < 3; ++q)
          expected[n * i + j] +=
              R[3 * (i % 3) + p] * flat[n * (i - i % 3 + p) + j - j % 3 + q] * R[3 * (j % 3) + q];
      }
    }
  }
  EXPECT_EQ(test::FindDifference(turned, expected, 1e-13), "") << named;  // rounding
}

TEST(ShellStiffness, TurnedElementHasTheTurnedStiffness) {
  for (const auto& named : test::AllQuads()) ExpectTurnedStiffness(named);
  for (const auto& named : test::AllTriangles()) ExpectTurnedStiffness(named);
}

// Node 3 off the plane of the others changes nothing: the element is its projection along e3. Here
// e3 is a global axis, and not a bit changes.
TEST(ShellStiffness, WarpedQuadIsItsProjection) {
  const Shell4Element flat = test::PlaceShape(test::DistortedQuad, test::InGlobalPlane);
  std::array<double, 12> coordinates = flat.Coordinates;
  coordinates[3 * 2 + 2] = 1.5;  // z of node 3
  Shell4Element warped;
  SetGeometry(warped, coordinates.data(), 4, test::ShapeE, test::ShapeMu, test::ShapeTK);
  EXPECT_EQ(StiffnessOf(warped), StiffnessOf(flat));
}

TEST(ShellStiffness, WarpedQuadIsItsProjectionInAnObliquePlane) {
  const Shell4Element flat = test::PlaceShape(test::DistortedQuad, test::InObliquePlane);
  std::array<double, 12> coordinates = flat.Coordinates;
  for (std::size_t i = 0; i < 3; ++i)
    coordinates[6 + i] += 1.5 * test::InObliquePlane.axes[3 * i + 2];
  Shell4Element warped;
  SetGeometry(warped, coordinates.data(), 4, test::ShapeE, test::ShapeMu, test::ShapeTK);
  const Matrix24 K = StiffnessOf(flat);
  EXPECT_EQ(test::FindDifference(StiffnessOf(warped), K, 1e-14), "");  // rounding
}

// Doubling is exact in binary: in local axes the entries of the in-plane part double and those of
// the bending part grow by eight.
TEST(ShellStiffness, DoubledThicknessOfATriangle) {
  const Matrix18 once = StiffnessOf(test::PlaceShape(test::ScaleneTriangle, test::InGlobalPlane));
  const Matrix18 twice = StiffnessOf(
      test::PlaceShape(test::ScaleneTriangle, test::InGlobalPlane, 2.0 * test::ShapeTK));
  for (std::size_t i = 0; i < 18; ++i) {
    const bool bends = i % 6 == Uz || i % 6 == Rx || i % 6 == Ry;
    for (std::size_t j = 0; j < 18; ++j)
      EXPECT_EQ(twice[18 * i + j], (bends ? 8.0 : 2.0) * once[18 * i + j]) << i << ' ' << j;
  }
}

TEST(ShellStiffness, OtherNodeCountIsIgnored) {
  const auto expectSame = [](auto element) {
    const auto K = StiffnessOf(element);
    element.NodeCount = 5;
    EXPECT_EQ(StiffnessOf(element), K);
  };
  expectSame(test::PlaceShape(test::DistortedQuad, test::InObliquePlane));
  expectSame(test::PlaceShape(test::ScaleneTriangle, test::InObliquePlane));
}

TEST(ShellStiffness, ZeroAreaIsNotFinite) {
  const Matrix24 quad = StiffnessOf(
      test::PlaceShape({{{0.0, 0.0}, {1.0, 0.0}, {1.0, 0.0}, {0.0, 0.0}}}, test::InGlobalPlane));
  const Matrix18 triangle = StiffnessOf(test::PlaceShape(
      test::PlaneShape<3>{{{0.0, 0.0}, {1.0, 0.0}, {2.0, 0.0}}}, test::InGlobalPlane));
  EXPECT_FALSE(std::isfinite(quad[0]));
  EXPECT_FALSE(std::isfinite(triangle[0]));
}

}  // namespace
}  // namespace korvex
