#include "check/fixed_dofs.h"

namespace kvx {

void CollectFixedDofs(const CheckedModel& model, FixedDofs& dofs) {
  const korvex::ModelTables& tables = model.tables;
  dofs.fixed.assign(tables.Nodes.size(), 0);
  dofs.meant.assign(tables.Nodes.size(), 0);
  for (std::size_t row = 0; row < tables.NodalRestraints.size(); ++row) {
    const korvex::NodalRestraint& restraint = tables.NodalRestraints[row];
    if (!IsNode(model, restraint.node) ||
        IsLost(model, korvex::Section::Restraints, static_cast<std::int32_t>(row))) {
      continue;
    }
    const auto node = static_cast<std::size_t>(restraint.node);
    for (std::size_t d = 0; d < restraint.fixed.size(); ++d) {
      const auto bit = static_cast<std::uint8_t>(1U << d);
      if (restraint.fixed[d] == 1) dofs.fixed[node] |= bit;
      if (restraint.fixed[d] != 0) dofs.meant[node] |= bit;
    }
  }
}

}  // namespace kvx
