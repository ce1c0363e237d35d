// Which dofs of the nodes are held, as the solver takes the restraint rows: a dof is held where any
// row of its node has the flag 1; every other number leaves it free (system/supports.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "deck/model_tables.h"

namespace kvx {

// [NPOIN] bit d of a node stands for dof d: ux, uy, uz, rx, ry, rz. Rows whose node does not exist
// count nowhere.
std::vector<std::uint8_t> ListHeldDofs(const korvex::ModelTables& tables);

// The same for each equation, 6 node + dof. isHeld: [equations] of all nodes; entries of held dofs
// become 1, others stay. Throws a Stop, as a run does, where a restraint holds a node that does not
// exist.
void MarkHeldDofs(const korvex::ModelTables& tables, std::vector<std::uint8_t>& isHeld);

// held: of a node.
inline bool IsHeld(std::uint8_t held, std::size_t dof) { return (held >> dof & 1U) != 0; }

}  // namespace kvx
