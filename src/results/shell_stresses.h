// The stress recovery of all shell elements, for the global model and for detail models.
//
// Element by element: gather the displacements of its nodes, then compute both faces at each corner
// (corner_stress.h). Nothing is extrapolated from integration points.
#pragma once

#include "model/model.h"

namespace korvex {

// Fills NodeStressTop and NodeStressBottom of four-node elements, at each corner.
// displacements: six per node, global; connectivity: elements x 4 node indices, element-major.
void RecoverShell4Stresses(const std::vector<double>& displacements,
                           const std::vector<std::int32_t>& connectivity,
                           std::vector<Shell4Element>& elements, int threads = 1);

// Fills NodeStressTop and NodeStressBottom of all shell elements from model.Displacements. All
// three corners of a three-node element get the values at its first corner.
void RecoverShellStresses(Model& model, int threads = 1);

}  // namespace korvex
