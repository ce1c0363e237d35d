// Supports and displacements in a node's own system (CD of its GRID) -> along the global axes.
//
// A model file supports a node along global axes alone. So the directions that a node is supported
// in must fill the space of some global axes: one axis of a system that is parallel to a global
// one, two axes whose plane is that of two global ones, or all three, whatever the system.
#pragma once

#include <array>
#include <cstdint>

#include "base/vector3.h"

namespace kvx {

// fixed: whether the node is supported along each of its system's axes; moves: by how much it is
// displaced there, 0 where it is not. axes: global, length 1, square to each other. Fills both for
// the global axes. Returns false where the supports do not lie along global axes.
bool TurnSupport(const std::array<korvex::Vector3, 3>& axes, const std::array<bool, 3>& fixed,
                 const std::array<double, 3>& moves, std::array<bool, 3>& globalFixed,
                 std::array<double, 3>& globalMoves);

}  // namespace kvx
