// The global load vector: nodal forces, then the equivalent nodal loads of distributed loads.
//
// Distributed loads act on four-node shells, three-node shells and beams, added in this order. The
// entry of dof d of node n is n * DofsPerNode + d, global axes.
#pragma once

#include "model/model.h"

namespace korvex {

// Fills model.LoadVector, NEQ doubles, in table order, and gives model.Displacements its size, NEQ.
// Throws a Stop where a load refers to a node or element that does not exist.
void AssembleLoadVector(Model& model);

}  // namespace korvex
