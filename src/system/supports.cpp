#include "system/supports.h"

#include "deck/check_reference.h"

namespace korvex {

namespace {

constexpr std::int32_t FixedFlag = 1;

}  // namespace

void ImposeSupports(Model& model) {
  const ModelTables& tables = model.Tables;
  for (std::size_t row = 0; row < tables.NodalRestraints.size(); ++row) {
    const NodalRestraint& restraint = tables.NodalRestraints[row];
    for (std::size_t d = 0; d < DofsPerNode; ++d) {
      if (restraint.fixed[d] != FixedFlag) continue;
      CheckReference("Restraint", static_cast<std::int32_t>(row), "node", restraint.node,
                     {"nodal points", tables.NPOIN});
      const std::size_t equation = static_cast<std::size_t>(restraint.node) * DofsPerNode + d;
      const std::int64_t diagonal = model.Stiffness.DiagonalAddress[equation];
      model.Stiffness.Values[static_cast<std::size_t>(diagonal)] = PenaltyStiffness;
    }
  }
}

}  // namespace korvex
