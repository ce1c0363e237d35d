// The connection between a shell element and its membrane and plate parts, for both element kinds.
//
// Local coordinates, the positions of the parts' dofs in the element, and the rotation between
// local and global axes. Element dofs are 6k + d, d = 0 .. 5 for ux, uy, uz, rx, ry, rz of node k;
// a membrane part has u, v, drilling and a plate part w, rx, ry per node. Number: as in
// bilinear_map.h.
//
// The rotations multiply block by block and give the same bits as the full matrix products: each
// sum starts at 0.0 and runs over the inner index in ascending order. Without the 0.0 a sum could
// be -0 instead of 0.
#pragma once

#include <array>
#include <cstdint>

#include "base/matrix.h"
#include "shell/element_frame.h"
#include "shell/shell_element.h"

namespace korvex {

// Positions of a part's three dofs among the node's six.
inline constexpr std::int32_t MembranePlace[3]{0, 1, 5};
inline constexpr std::int32_t PlatePlace[3]{2, 3, 4};

// x = e1 . P, y = e2 . P for each node at the global position P. The origin is the global one, not
// a node. The component along e3 is dropped: a warped element is projected onto the plane of its
// frame, without correction.
// coordinates: nodes x 3, row-major, global; x, y: `nodes` each, written completely.
template <typename Number>
inline void ComputeLocalCoordinates(const Number* coordinates, std::int32_t nodes,
                                    const FrameOf<Number>& frame, Number* x, Number* y) {
  for (std::int32_t k = 0; k < nodes; ++k) {
    const Number* P = coordinates + 3 * k;
    x[k] = 0.0 + frame[0] * P[0] + frame[3] * P[1] + frame[6] * P[2];  // e1 . P
    y[k] = 0.0 + frame[1] * P[0] + frame[4] * P[1] + frame[7] * P[2];  // e2 . P
  }
}

// Rotates K from local to global axes in place: T^T K T. K: n x n, row-major, n = 6 * nodes. T has
// 2 * nodes diagonal blocks L (rows e1, e2, e3). Only the blocks are multiplied: the zeros of T
// would add nothing to finite numbers.
template <typename Number>
inline void RotateMatrixToGlobal(const FrameOf<Number>& frame, std::int32_t nodes, Number* K) {
  const auto& R = frame;  // L^T, because its columns are the local axes
  const std::int32_t n = 6 * nodes;
  for (std::int32_t row = 0; row < n; row += 3) {
    Number *k0 = K + row * n, *k1 = k0 + n, *k2 = k1 + n;
    for (std::int32_t j = 0; j < n; ++j) {  // L^T K
      const Number x = k0[j], y = k1[j], z = k2[j];
      k0[j] = 0.0 + R[0] * x + R[1] * y + R[2] * z;
      k1[j] = 0.0 + R[3] * x + R[4] * y + R[5] * z;
      k2[j] = 0.0 + R[6] * x + R[7] * y + R[8] * z;
    }
  }
  for (Number* k = K; k != K + n * n; k += 3) {  // (L^T K) L
    const Number x = k[0], y = k[1], z = k[2];
    k[0] = 0.0 + x * R[0] + y * R[1] + z * R[2];
    k[1] = 0.0 + x * R[3] + y * R[4] + z * R[5];
    k[2] = 0.0 + x * R[6] + y * R[7] + z * R[8];
  }
}

// Multiplies each triple of f by `rotation` in place. rotation: 3 x 3, row-major; f: 6 * nodes.
template <typename Number>
inline void RotateTriples(const std::array<Number, 9>& rotation, std::int32_t nodes, Number* f) {
  std::array<Number, 3> rotated{};
  for (Number* triple = f; triple != f + 6 * nodes; triple += 3) {
    MatMultiply(rotated.data(), rotation.data(), triple, 3, 3, 1);
    for (std::size_t i = 0; i < 3; ++i) triple[i] = rotated[i];
  }
}

// Rotates f from local to global axes in place: T^T f. f: 6 * nodes, element dof order.
template <typename Number>
inline void RotateVectorToGlobal(const FrameOf<Number>& frame, std::int32_t nodes, Number* f) {
  RotateTriples(frame, nodes, f);
}

// Rotates f from global to local axes in place: T f. f: 6 * nodes, element dof order.
template <typename Number>
inline void RotateVectorToLocal(const FrameOf<Number>& frame, std::int32_t nodes, Number* f) {
  std::array<Number, 9> L{};
  MatTranspose(L.data(), frame.data(), 3, 3);
  RotateTriples(L, nodes, f);
}

// Sets up a membrane or plate part for `element`: counts, local coordinates, material, thickness.
// Element: a ShellElement, or ShellGeometry of lanes.
template <std::int32_t Nodes, typename Part, typename Element>
inline void SetUpPart(const Element& element, Part& part) {
  part.Init();
  ComputeLocalCoordinates(element.Coordinates.data(), Nodes, element.Frame, part.x.data(),
                          part.y.data());
  part.E = element.E;
  part.Mu = element.Mu;
  part.TK = element.TK;
}

// The same for a ShellElement, which knows its nodes.
template <typename Part, std::int32_t Nodes>
inline void SetUpPart(const ShellElement<Nodes>& element, Part& part) {
  SetUpPart<Nodes>(element, part);
}

}  // namespace korvex
