// The stiffness of the two shell elements as wholes: how the parts come together, zero-energy
// modes, rigid motions, rotations in space, warp.
#include "shell/shell_stiffness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "shell/quad_membrane.h"
#include "shell/quad_plate.h"
#include "shell/tri_membrane.h"
#include "shell/tri_plate.h"
#include "support/shell_shapes.h"
#include "support/symmetric_eigenvalues.h"

namespace korvex {
namespace {

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
  Part part;
  part.Init();
  for (std::size_t k = 0; k < shape.size(); ++k) {
    part.x[k] = shape[k][0];
    part.y[k] = shape[k][1];
  }
  part.E = test::ShapeE;
  part.Mu = test::ShapeMu;
  part.TK = test::ShapeTK;
  part.Stiffness();
  return part;
}

// A shape in the global X-Y plane has the global axes as its own, so that the parts' matrices stand
// in the element's as they are: u, v, drilling at 0, 1, 5 and w, rx, ry at 2, 3, 4 of each node.
template <typename Membrane, typename Plate, std::size_t Nodes>
void ExpectPartsInPlace(const test::PlaneShape<Nodes>& shape) {
  const auto element = test::PlaceShape(shape, test::InGlobalPlane);
  const Membrane membrane = MakePart<Membrane>(shape);
  const Plate plate = MakePart<Plate>(shape);
  const auto K = StiffnessOf(element);
  constexpr std::array<bool, 6> inPlane{true, true, false, false, false, true};
  constexpr std::array<std::size_t, 6> place{0, 1, 0, 1, 2, 2};
  for (std::size_t i = 0; i < 6 * Nodes; ++i) {
    for (std::size_t j = 0; j < 6 * Nodes; ++j) {
      double expected = 0.0;
      if (inPlane[i % 6] == inPlane[j % 6]) {
        const auto& part = inPlane[i % 6] ? membrane.K : plate.K;
        expected = part[3 * Nodes * (3 * (i / 6) + place[i % 6]) + 3 * (j / 6) + place[j % 6]];
      }
      EXPECT_EQ(K[6 * Nodes * i + j], expected) << i << ' ' << j;
    }
  }
}

TEST(ShellStiffness, RectangleInTheGlobalPlaneHasItsLocalStiffness) {
  ExpectPartsInPlace<QuadMembrane, QuadPlate, 4>(
      {{{0.0, 0.0}, {3.0, 0.0}, {3.0, 1.25}, {0.0, 1.25}}});
}

TEST(ShellStiffness, TriangleInTheGlobalPlaneHasItsLocalStiffness) {
  ExpectPartsInPlace<TriMembrane, TriPlate, 3>({{{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}});
}

// Both kinds of elements at all shapes: test(element, name, shape).
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

// The motions of a rigid body and no more: rank 18 of 24 and 12 of 18.
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

// Three translations and three rotations about an arbitrary centre. In the element's own axes one
// of them is the drilling, which turns with the plane.
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

// Turning an element turns its forces and displacements: K' = T K T^T with the turn in each block.
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

// Node 3 off the plane of the others changes nothing: the element is its projection along e3. Steps
// along a global axis are exact.
TEST(ShellStiffness, WarpedQuadIsItsProjection) {
  const Shell4Element flat = test::PlaceShape(test::DistortedQuad, test::InGlobalPlane);
  std::array<double, 12> coordinates = flat.Coordinates;
  coordinates[8] = 1.5;
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

// Doubling is exact in binary: in local axes each entry doubles, or is eight times as large where
// it bends.
TEST(ShellStiffness, DoubledThicknessOfATriangle) {
  const Matrix18 once = StiffnessOf(test::PlaceShape(test::ScaleneTriangle, test::InGlobalPlane));
  const Matrix18 twice = StiffnessOf(
      test::PlaceShape(test::ScaleneTriangle, test::InGlobalPlane, 2.0 * test::ShapeTK));
  for (std::size_t i = 0; i < 18; ++i) {
    const bool bends = i % 6 == 2 || i % 6 == 3 || i % 6 == 4;
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
