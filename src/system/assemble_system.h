// The front half of a run: from the model file to the assembled, loaded and supported system.
#pragma once

#include <ostream>

#include "model/model.h"

namespace korvex {

// Reads "fem_solving.txt" into `model`, writes "structure.dxf", and leaves the stiffness matrix,
// the load vector and the allocated displacements ready for the solution. `log` is the calculation
// log, which receives the memory estimate.
void AssembleSystem(Model& model, std::ostream& log);

// The stage of it that adds the stiffness of all elements: four-node shells, three-node shells,
// beams, each in table order. `model.Stiffness` must have its zero values.
void AssembleStiffness(Model& model);

}  // namespace korvex
