// A quick test for decoupled dofs: may K fall into independent systems?
//
// In a flat plate in the xy plane, no element couples the membrane dofs (ux, uy, rz) with the
// bending dofs (uz, rx, ry). This test reads a sample of K's entries, so it costs little. It
// answers "no" as soon as the entries seen couple all six dofs, directly or by way of others; one
// inclined element or one stiffener out of the plane is enough. "Yes" is not certain:
// SolveIndependentSystems (independent_systems.h) then reads all entries.
#pragma once

#include <cstdint>

#include "skyline/skyline_matrix.h"

namespace korvex {

// At most one stored entry in 16 may be non-zero. The list of non-zeros takes 16 bytes for each, so
// at most an eighth of K's memory. Plates less than 36 nodes wide exceed the limit; below 25 nodes
// the independent systems would take more time than they save.
constexpr std::uint64_t StoredPerNonZero = 16;

// Whether K may fall into independent systems of certain dofs, so that solving them separately may
// save time. False if all six dofs are coupled (in most structures the first columns show it), if
// too many entries are non-zero, or if a diagonal entry is not positive.
// K: numbered by node, equation = node * DofsPerNode + dof (base/dof_counts.h).
bool MayDecouple(const SkylineMatrix& K);

}  // namespace korvex
