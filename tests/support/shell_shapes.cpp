#include "support/shell_shapes.h"

namespace korvex::test {

std::vector<NamedShape<4>> AllQuads() {
  return {{"Square", UnitSquare},
          {"Rectangle", {{{0.0, 0.0}, {3.0, 0.0}, {3.0, 1.25}, {0.0, 1.25}}}},
          {"Parallelogram", Parallelogram},
          {"Trapezoid", {{{0.0, 0.0}, {3.0, 0.0}, {2.0, 1.5}, {0.5, 1.5}}}},
          {"Distorted", DistortedQuad},
          {"Kite", {{{0.0, 0.0}, {2.0, 0.0}, {1.5, 1.25}, {-0.5, 2.0}}}}};
}

std::vector<NamedShape<3>> AllTriangles() {
  return {{"Right", {{{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}}},
          {"Scalene", ScaleneTriangle},
          {"Obtuse", {{{0.0, 0.0}, {2.0, 0.0}, {-0.75, 1.25}}}},
          {"Slender", {{{0.0, 0.0}, {4.0, 0.0}, {3.0, 0.75}}}}};
}

Vector3 TurnBy(const ElementFrame& matrix, const Vector3& v) {
  Vector3 turned{};
  for (std::size_t i = 0; i < 3; ++i) {
    turned[i] = matrix[3 * i] * v[0] + matrix[3 * i + 1] * v[1] + matrix[3 * i + 2] * v[2];
  }
  return turned;
}

namespace {

template <std::int32_t Nodes>
ShellElement<Nodes> Place(const PlaneShape<static_cast<std::size_t>(Nodes)>& shape,
                          const Placement& placement, double TK) {
  std::array<double, static_cast<std::size_t>(Nodes) * 3> coordinates{};
  for (std::size_t k = 0; k < shape.size(); ++k) {
    const Vector3 offset = TurnBy(placement.axes, {shape[k][0], shape[k][1], 0.0});
    for (std::size_t i = 0; i < 3; ++i) coordinates[3 * k + i] = placement.origin[i] + offset[i];
  }
  ShellElement<Nodes> element;
  SetGeometry(element, coordinates.data(), Nodes, ShapeE, ShapeMu, TK);
  return element;
}

}  // namespace

Shell4Element PlaceShape(const PlaneShape<4>& shape, const Placement& placement, double TK) {
  return Place<4>(shape, placement, TK);
}

Shell3Element PlaceShape(const PlaneShape<3>& shape, const Placement& placement, double TK) {
  return Place<3>(shape, placement, TK);
}

}  // namespace korvex::test
