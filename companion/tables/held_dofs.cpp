#include "tables/held_dofs.h"

#include "base/dof_counts.h"
#include "deck/check_reference.h"

namespace kvx {

namespace {

constexpr std::int32_t HeldFlag = 1;

}  // namespace

std::vector<std::uint8_t> ListHeldDofs(const korvex::ModelTables& tables) {
  std::vector<std::uint8_t> held(tables.Nodes.size(), 0);
  for (const korvex::NodalRestraint& restraint : tables.NodalRestraints) {
    const auto node = static_cast<std::size_t>(restraint.node);  // very large if negative
    if (node >= held.size()) continue;
    for (std::size_t d = 0; d < restraint.fixed.size(); ++d) {
      if (restraint.fixed[d] != HeldFlag) continue;
      held[node] = static_cast<std::uint8_t>(held[node] | 1U << d);
    }
  }
  return held;
}

void MarkHeldDofs(const korvex::ModelTables& tables, std::vector<std::uint8_t>& isHeld) {
  constexpr std::size_t Dofs = korvex::DofsPerNode;
  for (std::size_t row = 0; row < tables.NodalRestraints.size(); ++row) {
    const korvex::NodalRestraint& restraint = tables.NodalRestraints[row];
    for (std::size_t d = 0; d < Dofs; ++d) {
      if (restraint.fixed[d] != HeldFlag) continue;
      korvex::CheckReference("Restraint", static_cast<std::int32_t>(row), "node", restraint.node,
                             {"nodal points", tables.NPOIN});
      isHeld[static_cast<std::size_t>(restraint.node) * Dofs + d] = 1;
    }
  }
}

}  // namespace kvx
