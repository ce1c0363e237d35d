// The stress recovery of all shell elements.
#pragma once

#include "model/model.h"

namespace korvex {

// Fills NodeStressTop and NodeStressBottom of every shell element from the displacements: at each
// corner of a four-node element; for a triangle the values at its first corner in all three slots.
void RecoverShellStresses(Model& model);

}  // namespace korvex
