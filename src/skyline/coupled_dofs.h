// Whether the dofs of nodes fall into sets that nothing in a structure couples, as those of the
// membrane and of the bending of a flat plate parallel to a coordinate plane do.
//
// A quick look that comes before all entries are looked at: whatever couples all dofs of nodes, the
// first stiffener beside the plane or the first element that is inclined, is one system.
#pragma once

#include <cstdint>

#include "skyline/skyline_matrix.h"

namespace korvex {

// Entries of K for each that may be listed: the list, two numbers for each, takes up to an eighth
// of K's memory. Plates of less than 36 nodes in width have more; below 25 they would lose time.
constexpr std::uint64_t EntriesPerListed = 16;

// Whether K may fall into systems that go by the dofs of nodes, and solving them may pay. False
// where all dofs of a node are coupled somewhere, which the first columns tell of most structures,
// and where more entries are not zero than should be listed.
// K: its equations are numbered by nodes, DofsPerNode (base/dof_counts.h) to each.
bool MayDecouple(const SkylineMatrix& K);

}  // namespace korvex
