// The stiffness matrices of several four-node shells, side by side in the lanes of vectors.
//
// Lanes without a shell of their own repeat the last one. A shell whose matrix has an infinity or a
// NaN is formed once more alone, because a NaN of the lanes may have another sign.
#pragma once

#include <cstddef>

#include "shell/shell_element.h"

namespace korvex {

// Forms the matrices of shells[0 .. count - 1], each with the bits of Shell4Stiffness.
// vectorBits: as for FindShellRoutines (shell_lanes.h); matrices: `count`, each 24 x 24, row-major,
// global axes, element dof order, written completely.
void FormShell4Stiffnesses(int vectorBits, const Shell4Element* shells, std::size_t count,
                           double* const* matrices);

}  // namespace korvex
