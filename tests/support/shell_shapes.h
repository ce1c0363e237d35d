// The flat shell elements of the tests: plane shapes placed in space.
//
// A shape has node 1 at the origin and node 2 on the positive x axis, so that the element's local
// axes are those of the shape, and its nodes run counter-clockwise.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "shell/shell_element.h"

namespace korvex::test {

inline constexpr double ShapeE = 210.0, ShapeMu = 0.3, ShapeTK = 0.25;

template <std::size_t Nodes>
using PlaneShape = std::array<std::array<double, 2>, Nodes>;  // x, y per node

template <std::size_t Nodes>
struct NamedShape {
  std::string name;
  PlaneShape<Nodes> shape;
};

// The name of the shape in messages of failed tests.
template <std::size_t Nodes>
std::ostream& operator<<(std::ostream& out, const NamedShape<Nodes>& shape) {
  return out << shape.name;
}

// The position of a shape in space. The columns of `axes` are its x, y and normal in global
// components.
struct Placement {
  ElementFrame axes;
  Vector3 origin;
};

inline constexpr Placement InGlobalPlane{{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}, {}};

// A plane that is parallel to no axis. The columns (3, 6, 2), (-6, 2, 3) and (2, -3, 6) have the
// length 7 and are orthogonal and right-handed. The matrix is not symmetric, so that tests detect a
// transposed one.
inline constexpr Placement InObliquePlane{{3.0 / 7.0, -6.0 / 7.0, 2.0 / 7.0,  //
                                           6.0 / 7.0, 2.0 / 7.0, -3.0 / 7.0,  //
                                           2.0 / 7.0, 3.0 / 7.0, 6.0 / 7.0},
                                          {5.0, -2.0, 3.0}};

inline constexpr PlaneShape<4> UnitSquare{{{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}}};
inline constexpr PlaneShape<4> DistortedQuad{{{0.0, 0.0}, {4.0, 0.0}, {3.25, 2.5}, {0.5, 3.0}}};
inline constexpr PlaneShape<4> Parallelogram{{{0.0, 0.0}, {2.0, 0.0}, {2.75, 1.5}, {0.75, 1.5}}};
inline constexpr PlaneShape<3> ScaleneTriangle{{{0.0, 0.0}, {3.0, 0.0}, {1.0, 2.0}}};
// The edges 2-3 and 4-1 cross; the Jacobian's determinant changes its sign inside.
inline constexpr PlaneShape<4> BowTie{{{0.0, 0.0}, {2.0, 0.0}, {0.5, 1.0}, {1.25, 1.5}}};

std::vector<NamedShape<4>> AllQuads();
std::vector<NamedShape<3>> AllTriangles();

// The element of this shape at this placement, with ShapeE, ShapeMu and thickness TK.
Shell4Element PlaceShape(const PlaneShape<4>& shape, const Placement& placement,
                         double TK = ShapeTK);
Shell3Element PlaceShape(const PlaneShape<3>& shape, const Placement& placement,
                         double TK = ShapeTK);

// matrix: 3 x 3, row-major, times v.
Vector3 TurnBy(const ElementFrame& matrix, const Vector3& v);

// The element's 6 x Nodes displacements, global, from a field in the shape's own axes: field(x, y)
// gives the six local components at a node.
template <std::size_t Nodes, typename Field>
std::array<double, 6 * Nodes> DisplaceNodes(const PlaneShape<Nodes>& shape,
                                            const Placement& placement, const Field& field) {
  std::array<double, 6 * Nodes> d{};
  for (std::size_t k = 0; k < Nodes; ++k) {
    const std::array<double, 6> local = field(shape[k][0], shape[k][1]);
    const Vector3 u = TurnBy(placement.axes, {local[0], local[1], local[2]});
    const Vector3 r = TurnBy(placement.axes, {local[3], local[4], local[5]});
    for (std::size_t i = 0; i < 3; ++i) {
      d[6 * k + i] = u[i];
      d[6 * k + 3 + i] = r[i];
    }
  }
  return d;
}

// The integral of x^p y^q over the polygon for p + q <= 2 (0, 0: its area), summed over the
// triangles that its edges form with the origin.
template <std::size_t Nodes>
double IntegrateMonomial(const PlaneShape<Nodes>& shape, int p, int q) {
  double sum = 0.0;
  for (std::size_t i = 0; i < Nodes; ++i) {
    const auto& [x1, y1] = shape[i];
    const auto& [x2, y2] = shape[(i + 1) % Nodes];
    const double area = (x1 * y2 - x2 * y1) / 2.0;
    const auto value = [p, q](double x, double y) {
      return (p > 0 ? x : 1.0) * (p > 1 ? x : 1.0) * (q > 0 ? y : 1.0) * (q > 1 ? y : 1.0);
    };
    // The mid-side rule: exact up to degree two.
    sum += area / 3.0 *
           (value(x1 / 2.0, y1 / 2.0) + value(x2 / 2.0, y2 / 2.0) +
            value((x1 + x2) / 2.0, (y1 + y2) / 2.0));
  }
  return sum;
}

// The largest absolute value of a matrix or vector.
template <typename Values>
double LargestEntry(const Values& values) {
  double largest = 0.0;
  for (const double value : values) {
    const double size = value < 0.0 ? -value : value;
    if (size > largest) largest = size;
  }
  return largest;
}

// Empty if every value[i] is within `bound` times the largest expected entry of expected[i], else
// the first that is not. Non-finite values are not.
template <typename Values, typename Expected>
std::string FindDifference(const Values& values, const Expected& expected, double bound) {
  const double scale = LargestEntry(expected);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const double difference = values[i] - expected[i];
    if (!(difference <= bound * scale && -difference <= bound * scale)) {
      return "entry " + std::to_string(i) + ": " + std::to_string(values[i]) + " for " +
             std::to_string(expected[i]) + ", off by " + std::to_string(difference / scale * 1e12) +
             "e-12 of the largest";
    }
  }
  return "";
}

// A membrane or plate part (QuadMembrane, TriPlate, ...) with the nodes of `shape` as its local
// coordinates. Nothing is formed yet.
template <typename Part, std::size_t Nodes>
Part SetUpShape(const PlaneShape<Nodes>& shape, double E, double Mu, double TK) {
  Part part;
  part.Init();
  for (std::size_t k = 0; k < Nodes; ++k) {
    part.x[k] = shape[k][0];
    part.y[k] = shape[k][1];
  }
  part.E = E;
  part.Mu = Mu;
  part.TK = TK;
  return part;
}

}  // namespace korvex::test
