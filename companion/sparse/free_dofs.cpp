#include "sparse/free_dofs.h"

#include "base/dof_counts.h"
#include "deck/check_reference.h"
#include "report/check_memory.h"

namespace kvx {

using korvex::DofsPerNode;

namespace {

constexpr std::int32_t FixedFlag = 1;

void MarkFixed(const korvex::ModelTables& tables, std::vector<char>& isFixed) {
  for (std::size_t row = 0; row < tables.NodalRestraints.size(); ++row) {
    const korvex::NodalRestraint& restraint = tables.NodalRestraints[row];
    for (std::size_t d = 0; d < DofsPerNode; ++d) {
      if (restraint.fixed[d] != FixedFlag) continue;
      korvex::CheckReference("Restraint", static_cast<std::int32_t>(row), "node", restraint.node,
                             {"nodal points", tables.NPOIN});
      isFixed[static_cast<std::size_t>(restraint.node) * DofsPerNode + d] = 1;
    }
  }
}

}  // namespace

void ListFreeDofs(const korvex::ModelTables& tables, FreeDofs& dofs) {
  const std::size_t count = tables.Nodes.size() * static_cast<std::size_t>(DofsPerNode);
  dofs = {};
  korvex::AllocateOrStop("the numbers of the equations", count, 9, [&] {
    dofs.places.resize(count);
    dofs.isFixed.assign(count, 0);
    dofs.equations.reserve(count);
  });
  MarkFixed(tables, dofs.isFixed);
  for (std::size_t i = 0; i < count; ++i) {
    std::vector<std::int32_t>& list = dofs.isFixed[i] != 0 ? dofs.fixed : dofs.equations;
    dofs.places[i] = static_cast<std::int32_t>(list.size());
    list.push_back(static_cast<std::int32_t>(i));
  }
}

}  // namespace kvx
