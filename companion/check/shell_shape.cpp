#include "check/shell_shape.h"

#include <algorithm>
#include <cmath>

#include "check/check_numbers.h"

namespace kvx {

using korvex::Cross;
using korvex::Length;
using korvex::Subtract;
using korvex::Vector3;

namespace {

// Below this share of the coordinates a distance is nothing but their rounding.
constexpr double RoundingShare = 1e-10;

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

double Degrees(double sine, double cosine) {
  return std::atan2(sine, cosine) * 180.0 / std::acos(-1.0);
}

template <std::size_t Nodes>
double LargestCoordinate(const std::array<Vector3, Nodes>& nodes) {
  double largest = 0.0;
  for (const Vector3& node : nodes) {
    for (const double x : node) largest = std::max(largest, std::fabs(x));
  }
  return largest;
}

// The edges from each node to the next.
template <std::size_t Nodes>
struct Edges {
  std::array<Vector3, Nodes> along{};
  std::array<double, Nodes> length{};
  double longest = 0.0;
  double smallest = 0.0;  // distances up to this one are none
};

template <std::size_t Nodes>
Edges<Nodes> MeasureEdges(const std::array<Vector3, Nodes>& nodes) {
  Edges<Nodes> edges;
  for (std::size_t k = 0; k < Nodes; ++k) {
    edges.along[k] = Subtract(nodes[(k + 1) % Nodes], nodes[k]);
    edges.length[k] = Length(edges.along[k]);
    edges.longest = std::max(edges.longest, edges.length[k]);
  }
  edges.smallest =
      std::max({SmallestLength, RoundingShare * LargestCoordinate(nodes), NoShare * edges.longest});
  return edges;
}

// The corner whose edge to the next one has no length; Nodes where all have one.
template <std::size_t Nodes>
std::size_t FindSamePlace(const Edges<Nodes>& edges) {
  std::size_t k = 0;
  while (k < Nodes && edges.length[k] > edges.smallest) ++k;
  return k;
}

// A corner in the element's plane: the sine and cosine of its angle, and how far the end of the
// shorter edge stands off the longer one. Sine and height are negative at a re-entrant corner.
struct Corner {
  double sine = 0.0, cosine = 0.0;
  double height = 0.0;
};

Corner MeasureCorner(const std::array<double, 2>& in, const std::array<double, 2>& out) {
  const double a = std::hypot(in[0], in[1]), b = std::hypot(out[0], out[1]);
  const double cross = in[0] * out[1] - in[1] * out[0];  // positive: anticlockwise
  const double dot = -(in[0] * out[0] + in[1] * out[1]);
  return {cross / (a * b), dot / (a * b), cross / std::max(a, b)};
}

// The corners of a quadrilateral in the plane with the unit axes e1, e2, and its area there.
struct PlaneQuad {
  std::array<Corner, 4> corners{};
  double area = 0.0;  // signed
};

PlaneQuad Project(const Edges<4>& edges, const Vector3& e1, const Vector3& e2) {
  std::array<std::array<double, 2>, 4> p{};
  for (std::size_t k = 0; k < 4; ++k) p[k] = {Dot(edges.along[k], e1), Dot(edges.along[k], e2)};
  PlaneQuad quad;
  for (std::size_t k = 0; k < 4; ++k) {
    quad.corners[k] = MeasureCorner(p[(k + 3) % 4], p[k]);
  }
  const std::array<double, 2> d1{p[0][0] + p[1][0], p[0][1] + p[1][1]};  // node 1 to 3
  const std::array<double, 2> d2{p[1][0] + p[2][0], p[1][1] + p[2][1]};  // node 2 to 4
  quad.area = 0.5 * (d1[0] * d2[1] - d1[1] * d2[0]);
  return quad;
}

// What makes a plane quadrilateral unfit for the solver.
ShellShape JudgePlaneQuad(const PlaneQuad& quad, const Edges<4>& edges) {
  std::size_t negative = 0, reentrant = 0, inLine = 4;
  for (std::size_t k = 0; k < 4; ++k) {
    const Corner& corner = quad.corners[k];
    if (std::fabs(corner.sine) <= NoShare || std::fabs(corner.height) <= edges.smallest) {
      inLine = k;
    } else if (corner.sine < 0.0) {
      ++negative;
      reentrant = k;
    }
  }
  if (negative == 2) return {ShapeFault::Crossing, 0, 0.0, 0.0};
  if (std::fabs(quad.area) <= edges.smallest * edges.longest) {
    return {ShapeFault::NoArea, 0, 0.0, 0.0};
  }
  if (negative == 3) return {ShapeFault::Concave, 0, 0.0, 0.0};
  if (negative == 1) return {ShapeFault::Concave, reentrant, 0.0, 0.0};
  if (inLine < 4) return {ShapeFault::InLine, inLine, 0.0, 0.0};
  return {};
}

// The angle that is farthest beyond its bounds.
ShellShape JudgeAngle(double angle, std::size_t corner, ShellShape worst) {
  if (angle >= SharpestAngle && angle <= BluntestAngle) return worst;
  if (worst.fault == ShapeFault::Skewed &&
      std::fabs(worst.measure - 90.0) >= std::fabs(angle - 90.0)) {
    return worst;
  }
  return {ShapeFault::Skewed, corner, angle, 0.0};
}

}  // namespace

ShellShape JudgeQuad(const std::array<Vector3, 4>& nodes, double thickness) {
  const Edges<4> edges = MeasureEdges(nodes);
  const std::size_t same = FindSamePlace(edges);
  if (same < 4) return {ShapeFault::SamePlace, same, 0.0, 0.0};

  const Vector3 a = edges.along[0], b = Subtract(nodes[3], nodes[0]);
  Vector3 normal = Cross(a, b);
  const double height = Length(normal) / std::max(edges.length[0], edges.length[3]);
  const bool hasPlane =
      height > edges.smallest && Length(normal) > NoShare * edges.length[0] * edges.length[3];
  if (!hasPlane) {  // nodes 4, 1 and 2 on a line: the solver's own plane is not defined
    normal = Cross(Subtract(nodes[2], nodes[0]), Subtract(nodes[3], nodes[1]));
    if (Length(normal) <= edges.smallest * edges.longest) {
      return {ShapeFault::NoArea, 0, 0.0, 0.0};
    }
    return {ShapeFault::InLine, 0, 0.0, 0.0};
  }
  const Vector3 e1 = korvex::Normalise(a), e3 = korvex::Normalise(normal);
  const PlaneQuad quad = Project(edges, e1, Cross(e3, e1));
  const ShellShape unfit = JudgePlaneQuad(quad, edges);
  if (unfit.fault != ShapeFault::None) return unfit;

  const double off = std::fabs(Dot(Subtract(nodes[2], nodes[0]), e3));
  const double size = std::sqrt(quad.area);
  if (off > LargestWarp * size && off > thickness) return {ShapeFault::Warped, 2, off, size};
  ShellShape shape;
  for (std::size_t k = 0; k < 4; ++k) {
    shape = JudgeAngle(Degrees(quad.corners[k].sine, quad.corners[k].cosine), k, shape);
  }
  if (shape.fault != ShapeFault::None) return shape;
  const double elongation = edges.longest * edges.longest / quad.area;
  if (elongation > LargestElongation) return {ShapeFault::Elongated, 0, elongation, 0.0};
  return {};
}

ShellShape JudgeTriangle(const std::array<Vector3, 3>& nodes) {
  const Edges<3> edges = MeasureEdges(nodes);
  const std::size_t same = FindSamePlace(edges);
  if (same < 3) return {ShapeFault::SamePlace, same, 0.0, 0.0};
  const double area = 0.5 * Length(Cross(edges.along[0], edges.along[1]));
  if (2.0 * area <= edges.smallest * edges.longest) return {ShapeFault::NoArea, 0, 0.0, 0.0};

  ShellShape shape;
  for (std::size_t k = 0; k < 3; ++k) {
    const Vector3 &in = edges.along[(k + 2) % 3], &out = edges.along[k];
    const double angle = Degrees(2.0 * area, -Dot(in, out));
    // A needle has a sharp angle between two long edges, which is no skew.
    if (angle > BluntestAngle) shape = JudgeAngle(angle, k, shape);
  }
  if (shape.fault != ShapeFault::None) return shape;
  const double elongation = edges.longest * edges.longest / (2.0 * area);
  if (elongation > LargestElongation) return {ShapeFault::Elongated, 0, elongation, 0.0};
  return {};
}

}  // namespace kvx
