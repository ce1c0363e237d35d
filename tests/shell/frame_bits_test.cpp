// The last bits of the element frame: each axis is a vector divided by its own length, and e2 is
// m = n x a divided by its length. Other forms are mathematically equal, but their last bits
// differ.
#include <gtest/gtest.h>

#include <cmath>

#include "shell/shell_element.h"

namespace korvex {
namespace {

// Nodes 1, 2 and the last one, for which all forms below differ.
constexpr Vector3 P1{-0.8, 0.7, -4.4}, P2{-1.5, -3.6, -3.7}, PLast{-2.4, 3.3, -1.0};

Vector3 Difference(const Vector3& a, const Vector3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vector3 Product(const Vector3& a, const Vector3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Size(const Vector3& a) { return std::sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]); }

Vector3 Divide(const Vector3& a, double divisor) {
  return {a[0] / divisor, a[1] / divisor, a[2] / divisor};
}

Vector3 Times(const Vector3& a, double factor) {
  return {a[0] * factor, a[1] * factor, a[2] * factor};
}

Vector3 Column(const ElementFrame& frame, std::size_t c) {
  return {frame[c], frame[3 + c], frame[6 + c]};
}

// The frames of a quadrilateral and of a triangle with these first, second and last nodes.
std::array<ElementFrame, 2> MakeFrames() {
  const std::array<double, 12> quad{P1[0], P1[1], P1[2], P2[0],    P2[1],    P2[2],
                                    5.0,   5.0,   5.0,   PLast[0], PLast[1], PLast[2]};
  const std::array<double, 9> triangle{P1[0], P1[1],    P1[2],    P2[0],   P2[1],
                                       P2[2], PLast[0], PLast[1], PLast[2]};
  Shell4Element four;
  Shell3Element three;
  SetGeometry(four, quad.data(), 4, 1.0, 0.0, 1.0);
  SetGeometry(three, triangle.data(), 3, 1.0, 0.0, 1.0);
  return {four.Frame, three.Frame};
}

TEST(FrameBits, FirstAxisIsTheEdgeDividedByItsLength) {
  const Vector3 a = Difference(P2, P1);
  const Vector3 e1 = Divide(a, Size(a));
  for (const ElementFrame& frame : MakeFrames()) EXPECT_EQ(Column(frame, 0), e1);
  EXPECT_NE(Times(a, 1.0 / Size(a)), e1);
  EXPECT_NE(Divide(a, std::hypot(std::hypot(a[0], a[1]), a[2])), e1);
}

TEST(FrameBits, SecondAxisIsTheProductOfNormalAndEdgeDividedByItsLength) {
  const Vector3 a = Difference(P2, P1);
  const Vector3 n = Product(a, Difference(PLast, P1));
  const Vector3 m = Product(n, a);
  const Vector3 e1 = Divide(a, Size(a));
  const Vector3 e2 = Divide(m, Size(m));
  const Vector3 e3 = Divide(n, Size(n));
  for (const ElementFrame& frame : MakeFrames()) EXPECT_EQ(Column(frame, 1), e2);
  const Vector3 turned = Product(e3, e1);
  EXPECT_NE(turned, e2);
  EXPECT_NE(Divide(turned, Size(turned)), e2);
  EXPECT_NE(Divide(m, Size(n) * Size(a)), e2);
  EXPECT_NE(Times(m, 1.0 / Size(m)), e2);
  const Vector3 half = Product(n, e1);
  EXPECT_NE(Divide(half, Size(half)), e2);
}

TEST(FrameBits, ThirdAxisIsTheNormalDividedByItsLength) {
  const Vector3 a = Difference(P2, P1), b = Difference(PLast, P1);
  const Vector3 n = Product(a, b);
  const Vector3 e3 = Divide(n, Size(n));
  for (const ElementFrame& frame : MakeFrames()) EXPECT_EQ(Column(frame, 2), e3);
  EXPECT_NE(Times(n, 1.0 / Size(n)), e3);
  const Vector3 unit = Product(Divide(a, Size(a)), Divide(b, Size(b)));
  EXPECT_NE(Divide(unit, Size(unit)), e3);
}

}  // namespace
}  // namespace korvex
