// The stress recovery of all shell elements, of the model and of detail models.
#pragma once

#include "model/model.h"

namespace korvex {

// Fills NodeStressTop and NodeStressBottom of four-node elements, at each corner.
// connectivity: element-major, four node indices each; displacements: six per node, global.
void RecoverShell4Stresses(const std::vector<double>& displacements,
                           const std::vector<std::int32_t>& connectivity,
                           std::vector<Shell4Element>& elements);

// Fills NodeStressTop and NodeStressBottom of every shell element from the displacements: at each
// corner of a four-node element; for a triangle the values at its first corner in all three slots.
void RecoverShellStresses(Model& model);

}  // namespace korvex
