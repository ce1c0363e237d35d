// Local coordinates and the rotations of elements: rotating in blocks of 3 x 3 must give the bits
// of the full matrix products.
#include "shell/element_parts.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "base/matrix.h"
#include "shell/quad_plate.h"
#include "shell/tri_membrane.h"
#include "support/same_bits.h"
#include "support/shell_shapes.h"

namespace korvex {
namespace {

// A frame whose entries have all their bits set, as frames of real models have.
ElementFrame MakeFrame() {
  ElementFrame frame;
  ComputeElementFrame({0.1, 0.2, 0.3}, {1.7, -0.4, 2.9}, {-0.6, 3.1, 1.3}, frame);
  return frame;
}

// n x n, T: the transposed frame in its diagonal blocks.
std::vector<double> MakeFullRotation(const ElementFrame& frame, std::size_t n) {
  std::vector<double> T(n * n, 0.0);
  for (std::size_t block = 0; block < n; block += 3) {
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) T[(block + i) * n + block + j] = frame[3 * j + i];
    }
  }
  return T;
}

// Values of mixed signs and sizes, some of them zero as in element matrices.
std::vector<double> MakeValues(std::size_t count) {
  std::mt19937 generator(7);
  std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
  std::vector<double> values(count);
  for (std::size_t i = 0; i < count; ++i)
    values[i] = i % 5 == 3 ? 0.0 : mantissa(generator) * (i % 3 == 0 ? 1e9 : 1.0);
  return values;
}

void ExpectFullProduct(const ElementFrame& frame, std::int32_t nodes, std::vector<double> K) {
  const std::int32_t n = 6 * nodes;
  const auto size = static_cast<std::size_t>(n);
  const std::vector<double> T = MakeFullRotation(frame, size);
  std::vector<double> Tt(size * size), W(size * size), full(size * size);
  MatTranspose(Tt.data(), T.data(), n, n);
  MatMultiply(W.data(), Tt.data(), K.data(), n, n, n);
  MatMultiply(full.data(), W.data(), T.data(), n, n, n);
  RotateMatrixToGlobal(frame, nodes, K.data());
  EXPECT_TRUE(test::SameBits(K, full)) << nodes << " nodes";
}

TEST(ElementParts, MatrixRotationIsTheFullProductBitForBit) {
  for (const std::int32_t nodes : {3, 4}) {
    const auto size = static_cast<std::size_t>(36 * nodes * nodes);
    ExpectFullProduct(MakeFrame(), nodes, MakeValues(size));
  }
}

// Each sum begins with 0, so a rotated zero is +0. Without that 0, three negative numbers of the
// frame would give three negative zeros, whose sum is -0.
TEST(ElementParts, ZerosRotateToPositiveZerosInAnyFrame) {
  const double a = 1.0 / 3.0, b = 2.0 / 3.0;
  for (const ElementFrame& frame : {ElementFrame{-a, -b, -b, b, -b, a, -b, -a, b},
                                    ElementFrame{-b, -a, b, -a, -b, -b, b, -b, a},
                                    ElementFrame{b, -b, a, -b, -a, b, -a, -b, -b}}) {
    ExpectFullProduct(frame, 4, std::vector<double>(576, 0.0));
    ExpectFullProduct(frame, 4, std::vector<double>(576, -0.0));
  }
}

TEST(ElementParts, VectorRotationsAreTheFullProductsBitForBit) {
  const ElementFrame frame = MakeFrame();
  for (const std::int32_t nodes : {3, 4}) {
    const std::int32_t n = 6 * nodes;
    const auto size = static_cast<std::size_t>(n);
    const std::vector<double> T = MakeFullRotation(frame, size);
    const std::vector<double> f = MakeValues(size);
    std::vector<double> Tt(size * size), full(size), rotated = f;
    MatTranspose(Tt.data(), T.data(), n, n);
    MatMultiply(full.data(), Tt.data(), f.data(), n, n, 1);
    RotateVectorToGlobal(frame, nodes, rotated.data());
    EXPECT_TRUE(test::SameBits(rotated, full)) << nodes << " nodes";
    rotated = f;
    MatMultiply(full.data(), T.data(), f.data(), n, n, 1);
    RotateVectorToLocal(frame, nodes, rotated.data());
    EXPECT_TRUE(test::SameBits(rotated, full)) << nodes << " nodes";
  }
}

// e1, e2, e3 are the frame's columns: a local unit vector turns into one of them.
TEST(ElementParts, LocalAxesTurnIntoTheFramesColumns) {
  const ElementFrame frame = MakeFrame();
  for (std::size_t axis = 0; axis < 3; ++axis) {
    std::array<double, 18> f{};
    f[axis] = 1.0;
    RotateVectorToGlobal(frame, 3, f.data());
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(f[i], frame[3 * i + axis]);
  }
}

TEST(ElementParts, LocalCoordinatesAreThoseOfTheShape) {
  const auto& shape = test::DistortedQuad;
  const Shell4Element element = test::PlaceShape(shape, test::InObliquePlane);
  std::array<double, 4> x{}, y{};
  ComputeLocalCoordinates(element.Coordinates.data(), 4, element.Frame, x.data(), y.data());
  // The origin (5, -2, 3) along the axes (3, 6, 2) / 7 and (-6, 2, 3) / 7.
  const double x0 = (15.0 - 12.0 + 6.0) / 7.0, y0 = (-30.0 - 4.0 + 9.0) / 7.0;
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_NEAR(x[k], x0 + shape[k][0], 1e-14) << k;  // rounding of numbers up to 10
    EXPECT_NEAR(y[k], y0 + shape[k][1], 1e-14) << k;
  }
}

// No node is subtracted and the component along e3 is dropped.
TEST(ElementParts, LocalCoordinatesAreComponentsOfTheGlobalPosition) {
  const std::array<double, 9> coordinates{1e6, 2.0, 3.0, -4.0, 5.5, 1e300, 7.0, -8.0, -9.0};
  std::array<double, 3> x{}, y{};
  ComputeLocalCoordinates(coordinates.data(), 3, test::InGlobalPlane.axes, x.data(), y.data());
  EXPECT_EQ(x, (std::array<double, 3>{1e6, -4.0, 7.0}));
  EXPECT_EQ(y, (std::array<double, 3>{2.0, 5.5, -8.0}));
}

// 1e16 - 1e16 + 1 is 1 only when summed from x to z.
TEST(ElementParts, LocalCoordinatesAreSummedFromXToZ) {
  const ElementFrame ones{1.0, 1.0, 0.0, 1.0, 1.0, 0.0, 1.0, 1.0, 0.0};
  const std::array<double, 3> position{1e16, -1e16, 1.0};
  double x = 0.0, y = 0.0;
  ComputeLocalCoordinates(position.data(), 1, ones, &x, &y);
  EXPECT_EQ(x, 1.0);
  EXPECT_EQ(y, 1.0);
}

TEST(ElementParts, PartGetsCoordinatesMaterialAndThickness) {
  const Shell4Element quad = test::PlaceShape(test::UnitSquare, test::InGlobalPlane);
  QuadPlate plate;
  SetUpPart(quad, plate);
  EXPECT_EQ(plate.nodes, 4);
  EXPECT_EQ(plate.x, (std::array<double, 4>{0.0, 1.0, 1.0, 0.0}));
  EXPECT_EQ(plate.y, (std::array<double, 4>{0.0, 0.0, 1.0, 1.0}));
  EXPECT_EQ(plate.E, test::ShapeE);
  EXPECT_EQ(plate.Mu, test::ShapeMu);
  EXPECT_EQ(plate.TK, test::ShapeTK);
}

TEST(ElementParts, OtherNodeCountIsIgnored) {
  Shell3Element triangle = test::PlaceShape(test::ScaleneTriangle, test::InGlobalPlane);
  triangle.NodeCount = 4;
  TriMembrane membrane;
  SetUpPart(triangle, membrane);
  EXPECT_EQ(membrane.nodes, 3);
  EXPECT_EQ(membrane.x, (std::array<double, 3>{0.0, 3.0, 1.0}));
  EXPECT_EQ(membrane.TK, test::ShapeTK);
}

}  // namespace
}  // namespace korvex
