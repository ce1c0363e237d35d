// The profile of the global stiffness matrix: which entries it stores, and how much memory they
// take.
//
// The node order of the model file decides the profile; nothing is renumbered. Loads and restraints
// do not influence it.
#pragma once

#include <cstdint>
#include <vector>

#include "model/model.h"

namespace korvex {

// Sets NEQ and makes room for the system. Throws a Stop where the equations are more than an int32
// counts, or where memory cannot hold them.
void NumberEquations(Model& model);

// Raises the columns of K for all elements of one kind.
// connectivity: elements x nodesPerElement (at most 4) node indices, element-major.
void RaiseElementColumns(const std::vector<std::int32_t>& connectivity,
                         std::int32_t nodesPerElement, SkylineMatrix& K);

// Fills the ColumnHeights of the stiffness matrix from the connectivity tables: four-node shells,
// three-node shells, beams. Does nothing if NEQ < 1.
void BuildProfile(Model& model);

// The memory that the entries of K will take, in GB of 2^30 bytes.
double EstimateGigabytes(const SkylineMatrix& K);

// Allocates the entries of K, zeros. Throws a Stop where memory cannot hold them.
void AllocateStiffness(SkylineMatrix& K);

}  // namespace korvex
