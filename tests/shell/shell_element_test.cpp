// The set-up of the two shell elements: the copied data, the local frame, and the report of a node
// count that does not match.
#include "shell/shell_element.h"

#include <gtest/gtest.h>

#include <cmath>

namespace korvex {
namespace {

constexpr double E = 2.1e11, Mu = 0.3, TK = 0.012;

template <std::int32_t Nodes>
using Coordinates = std::array<double, static_cast<std::size_t>(Nodes) * 3>;  // x, y, z per node

using Quad = Coordinates<4>;
using Triangle = Coordinates<3>;

constexpr Quad UnitSquare{0.0, 0.0, 0.0,         //
                          1.0, 0.0, 0.0,         //
                          1.0, 1.0, 0.0,         //
                          0.0, 1.0, 0.0};        //
constexpr Triangle UnitTriangle{0.0, 0.0, 0.0,   //
                                1.0, 0.0, 0.0,   //
                                0.0, 1.0, 0.0};  //
constexpr ElementFrame Identity{1.0, 0.0, 0.0,   //
                                0.0, 1.0, 0.0,   //
                                0.0, 0.0, 1.0};  //

template <std::int32_t Nodes>
ShellElement<Nodes> MakeElement(const Coordinates<Nodes>& coordinates) {
  ShellElement<Nodes> element;
  SetGeometry(element, coordinates.data(), Nodes, E, Mu, TK);
  return element;
}

Shell4Element MakeQuad(const Quad& coordinates) { return MakeElement<4>(coordinates); }
Shell3Element MakeTriangle(const Triangle& coordinates) { return MakeElement<3>(coordinates); }

// The local axis in column `axis`.
Vector3 GetAxis(const ElementFrame& frame, std::size_t axis) {
  return {frame[axis], frame[3 + axis], frame[6 + axis]};
}

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

void ExpectNear(const Vector3& a, const Vector3& b) {
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(a[i], b[i], 1e-15) << "component " << i;
}

void ExpectRightHandedUnitAxes(const ElementFrame& frame) {
  const Vector3 e1 = GetAxis(frame, 0), e2 = GetAxis(frame, 1), e3 = GetAxis(frame, 2);
  for (const Vector3& axis : {e1, e2, e3}) EXPECT_NEAR(Dot(axis, axis), 1.0, 1e-15);
  EXPECT_NEAR(Dot(e1, e2), 0.0, 1e-15);
  ExpectNear(Cross(e1, e2), e3);
}

TEST(ShellElement, ConstructionSetsTheSizes) {
  const Shell4Element quad;
  EXPECT_EQ(quad.NodeCount, 4);
  EXPECT_EQ(quad.DofsPerNode, 6);
  EXPECT_EQ(quad.ElementDofs, 24);
  const Shell3Element triangle;
  EXPECT_EQ(triangle.NodeCount, 3);
  EXPECT_EQ(triangle.DofsPerNode, 6);
  EXPECT_EQ(triangle.ElementDofs, 18);
}

template <std::int32_t Nodes>
void ExpectCopied(const Coordinates<Nodes>& coordinates) {
  const ShellElement<Nodes> element = MakeElement<Nodes>(coordinates);
  EXPECT_EQ(element.Coordinates, coordinates);
  EXPECT_EQ(element.E, E);
  EXPECT_EQ(element.Mu, Mu);
  EXPECT_EQ(element.TK, TK);
}

TEST(ShellElement, CoordinatesAndPropertiesAreCopied) {
  ExpectCopied<4>({1.0, 2.0, 3.0, 5.0, 7.0, 11.0, 13.0, 17.0, 19.0, 23.0, 29.0, 31.0});
  ExpectCopied<3>({1.0, 2.0, 3.0, 5.0, 7.0, 11.0, 13.0, 17.0, 19.0});
}

TEST(ShellElement, ElementsInTheGlobalPlaneHaveTheGlobalAxes) {
  EXPECT_EQ(MakeQuad(UnitSquare).Frame, Identity);
  EXPECT_EQ(MakeTriangle(UnitTriangle).Frame, Identity);
}

TEST(ShellElement, FrameDoesNotDependOnPositionOrSize) {
  Quad moved = UnitSquare;
  for (double& value : moved) value = 8.0 * value + 64.0;
  EXPECT_EQ(MakeQuad(moved).Frame, Identity);
}

// a = (3, 4, 0), b = (0, 0, 2): n = a x b = (8, -6, 0), n x a = (0, 0, 50).
TEST(ShellElement, ColumnsAreTheLocalAxes) {
  const Quad upright{0.0, 0.0, 0.0, 3.0, 4.0, 0.0, 3.0, 4.0, 2.0, 0.0, 0.0, 2.0};
  const ElementFrame expected{0.6, 0.0, 0.8,   // x of e1, e2, e3
                              0.8, 0.0, -0.6,  // y
                              0.0, 1.0, 0.0};  // z
  EXPECT_EQ(MakeQuad(upright).Frame, expected);
}

// a = (1, 2, 2) of length 3, b = (-1, 4, -1): n = a x b = (-10, -1, 6), |n|^2 = 137;
// m = n x a = (-14, 26, -19), |m|^2 = 1233 = 9 * 137.
TEST(ShellElement, FrameOfAnObliqueTriangle) {
  const Triangle oblique{5.0, -3.0, 2.0, 6.0, -1.0, 4.0, 4.0, 1.0, 1.0};
  const ElementFrame frame = MakeTriangle(oblique).Frame;
  const double n = std::sqrt(137.0), m = std::sqrt(1233.0);
  ExpectNear(GetAxis(frame, 0), {1.0 / 3.0, 2.0 / 3.0, 2.0 / 3.0});
  ExpectNear(GetAxis(frame, 1), {-14.0 / m, 26.0 / m, -19.0 / m});
  ExpectNear(GetAxis(frame, 2), {-10.0 / n, -1.0 / n, 6.0 / n});
  ExpectRightHandedUnitAxes(frame);
}

TEST(ShellElement, AxesAreRightHandedUnitVectors) {
  ExpectRightHandedUnitAxes(
      MakeQuad({0.1, 0.2, 0.3, 4.7, -1.3, 2.9, 5.0, 5.0, 5.0, -2.2, 3.1, 0.7}).Frame);
  ExpectRightHandedUnitAxes(
      MakeTriangle({1e3, 1e3, 1e3, 1e3, 1e3 + 1, 1e3, 999.0, 1e3, 7.0}).Frame);
}

TEST(ShellElement, ClockwiseNodesTurnTheNormal) {
  const Triangle clockwise{0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 1.0, 0.0, 0.0};
  EXPECT_EQ(GetAxis(MakeTriangle(clockwise).Frame, 2), (Vector3{0.0, 0.0, -1.0}));
}

// The frame depends on the edges that meet at node 1 alone; the warp is not corrected.
TEST(ShellElement, NodeThreeOfAWarpedQuadDoesNotChangeTheFrame) {
  Quad warped = UnitSquare;
  warped[6] = 3.0;
  warped[7] = -2.0;
  warped[8] = 0.75;
  EXPECT_EQ(MakeQuad(warped).Frame, Identity);
}

// The second edge of the frame runs from node 1 to the last node: 4 of a quadrilateral, 3 of a
// triangle.
TEST(ShellElement, LastNodeTurnsTheNormal) {
  Quad folded = UnitSquare;
  folded[10] = 0.0;  // node 4 at (0, 0, 1)
  folded[11] = 1.0;
  EXPECT_EQ(GetAxis(MakeQuad(folded).Frame, 2), (Vector3{0.0, -1.0, 0.0}));
  const Triangle upright{0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0};
  EXPECT_EQ(GetAxis(MakeTriangle(upright).Frame, 2), (Vector3{0.0, -1.0, 0.0}));
}

TEST(ShellElement, NodeCountIsComparedWithTheElements) {
  Shell4Element element;
  EXPECT_TRUE(SetGeometry(element, UnitSquare.data(), 4, E, Mu, TK));
  EXPECT_TRUE(HasOwnNodeCount(element));
  element.NodeCount = 3;
  EXPECT_FALSE(HasOwnNodeCount(element));
}

template <std::int32_t Nodes>
void ExpectOtherNodeCountIgnored(const Coordinates<Nodes>& coordinates) {
  for (const std::int32_t nodeCount : {Nodes - 1, Nodes + 1, 0, -1}) {
    ShellElement<Nodes> element;
    EXPECT_FALSE(SetGeometry(element, coordinates.data(), nodeCount, E, Mu, TK)) << nodeCount;
    EXPECT_EQ(element.NodeCount, Nodes);
    EXPECT_EQ(element.Coordinates, coordinates);
    EXPECT_EQ(element.TK, TK);
    EXPECT_EQ(element.Frame, Identity);
  }
}

// The element is set up with its own node count.
TEST(ShellElement, OtherNodeCountIsReportedAndIgnored) {
  ExpectOtherNodeCountIgnored<4>(UnitSquare);
  ExpectOtherNodeCountIgnored<3>(UnitTriangle);
}

TEST(ShellElement, CoincidentFirstNodesGiveNoFrame) {
  Quad quad = UnitSquare;
  quad[3] = 0.0;  // node 2 on node 1
  for (const double value : MakeQuad(quad).Frame) EXPECT_TRUE(std::isnan(value));
}

// The first edge has a length, so e1 is defined; the normal is not.
TEST(ShellElement, LastNodeOnTheFirstEdgeGivesNoNormal) {
  const ElementFrame frame = MakeTriangle({0.0, 0.0, 0.0, 2.0, 0.0, 0.0, 1.0, 0.0, 0.0}).Frame;
  EXPECT_EQ(GetAxis(frame, 0), (Vector3{1.0, 0.0, 0.0}));
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_TRUE(std::isnan(GetAxis(frame, 1)[i]));
    EXPECT_TRUE(std::isnan(GetAxis(frame, 2)[i]));
  }
}

}  // namespace
}  // namespace korvex
