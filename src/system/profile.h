// The profile of the global stiffness matrix: which entries are stored, and the memory they need.
//
// Column j stores the rows from its topmost row down to its diagonal (skyline/skyline_matrix.h).
// The node order of the model file decides the profile; nothing is renumbered. Loads and restraints
// have no influence.
#pragma once

#include <cstdint>
#include <vector>

#include "model/model.h"

namespace korvex {

// Sets model.NEQ and reserves the arrays of the system. Throws a Stop where there are more than
// 2^31 - 1 equations, or where the memory is too small for them.
void NumberEquations(Model& model);

// Raises the column heights of K for all elements of one kind.
// connectivity: elements x nodesPerElement (at most 4) node indices, element-major.
void RaiseElementColumns(const std::vector<std::int32_t>& connectivity,
                         std::int32_t nodesPerElement, SkylineMatrix& K);

// Fills the ColumnHeights of the stiffness matrix from the connectivity tables: four-node shells,
// three-node shells, beams. Does nothing if NEQ < 1.
void BuildProfile(Model& model);

// Returns the memory that the entries of K will need, in GB of 2^30 bytes.
double EstimateGigabytes(const SkylineMatrix& K);

// Allocates the entries of K, all zero. Throws a Stop where the memory is too small.
void AllocateStiffness(SkylineMatrix& K);

}  // namespace korvex
