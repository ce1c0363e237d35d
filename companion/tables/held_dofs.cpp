#include "tables/held_dofs.h"

namespace kvx {

std::vector<std::uint8_t> ListHeldDofs(const korvex::ModelTables& tables) {
  constexpr std::int32_t HeldFlag = 1;
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

}  // namespace kvx
