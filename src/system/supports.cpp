// The supports of supports.h.
#include "system/supports.h"

#include "model/check_reference.h"

namespace korvex {

namespace {

constexpr std::int32_t FixedFlag = 1;

}  // namespace

void ImposeSupports(Model& model) {
  for (std::int32_t row = 0; row < model.NRN; ++row) {
    const NodalRestraint& restraint = model.NodalRestraints[static_cast<std::size_t>(row)];
    for (std::size_t d = 0; d < DofsPerNode; ++d) {
      if (restraint.fixed[d] != FixedFlag) continue;
      CheckReference("Restraint", row, "node", restraint.node, {"nodal points", model.NPOIN});
      const std::size_t equation = static_cast<std::size_t>(restraint.node) * DofsPerNode + d;
      const std::int64_t diagonal = model.Stiffness.DiagonalAddress[equation];
      model.Stiffness.Values[static_cast<std::size_t>(diagonal)] = PenaltyStiffness;
    }
  }
}

}  // namespace korvex
