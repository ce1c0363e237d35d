// The global load vector: nodal forces first, then the equivalent nodal loads of distributed loads.
#pragma once

#include "model/model.h"

namespace korvex {

// Allocates Displacements and fills LoadVector, both NEQ long. Loads add up in table order. Throws
// a Stop where a load refers to a node or element that does not exist.
void AssembleLoadVector(Model& model);

}  // namespace korvex
