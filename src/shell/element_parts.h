// The connection between a shell element and its membrane and plate parts, for both element kinds.
//
// Local coordinates, the positions of the parts' dofs in the element, and the rotation between
// local and global axes. Element dofs are 6k + d, d = 0 .. 5 for ux, uy, uz, rx, ry, rz of node k;
// a membrane part has u, v, drilling and a plate part w, rx, ry per node.
#pragma once

#include <array>
#include <cstdint>

#include "shell/element_frame.h"
#include "shell/shell_element.h"

namespace korvex {

// Positions of a part's three dofs among the node's six.
inline constexpr std::array<std::int32_t, 3> MembranePlace{0, 1, 5};
inline constexpr std::array<std::int32_t, 3> PlatePlace{2, 3, 4};

// x = e1 . P, y = e2 . P for each node at the global position P. The origin is the global one, not
// a node. The component along e3 is dropped: a warped element is projected onto the plane of its
// frame, without correction.
// coordinates: nodes x 3, row-major, global; x, y: `nodes` each, written completely.
void ComputeLocalCoordinates(const double* coordinates, std::int32_t nodes,
                             const ElementFrame& frame, double* x, double* y);

// Rotates K from local to global axes in place: T^T K T. K: n x n, row-major, n = 6 * nodes. T has
// 2 * nodes diagonal blocks L (rows e1, e2, e3). Only the blocks are multiplied: the zeros of T
// would add nothing to finite numbers.
void RotateMatrixToGlobal(const ElementFrame& frame, std::int32_t nodes, double* K);

// Rotates f from local to global axes in place: T^T f. f: 6 * nodes, element dof order.
void RotateVectorToGlobal(const ElementFrame& frame, std::int32_t nodes, double* f);

// Rotates f from global to local axes in place: T f. f: 6 * nodes, element dof order.
void RotateVectorToLocal(const ElementFrame& frame, std::int32_t nodes, double* f);

// Sets up a membrane or plate part for `element`: counts, local coordinates, material, thickness.
template <typename Part, std::int32_t Nodes>
void SetUpPart(const ShellElement<Nodes>& element, Part& part) {
  part.Init();
  ComputeLocalCoordinates(element.Coordinates.data(), Nodes, element.Frame, part.x.data(),
                          part.y.data());
  part.E = element.E;
  part.Mu = element.Mu;
  part.TK = element.TK;
}

}  // namespace korvex
