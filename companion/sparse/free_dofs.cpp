#include "sparse/free_dofs.h"

#include "base/dof_counts.h"
#include "report/check_memory.h"
#include "tables/held_dofs.h"

namespace kvx {

using korvex::DofsPerNode;

void ListFreeDofs(const korvex::ModelTables& tables, FreeDofs& dofs) {
  const std::size_t count = tables.Nodes.size() * static_cast<std::size_t>(DofsPerNode);
  dofs = {};
  korvex::AllocateOrStop("the numbers of the equations", count, 9, [&] {
    dofs.places.resize(count);
    dofs.isFixed.assign(count, 0);
    dofs.equations.reserve(count);
  });
  MarkHeldDofs(tables, dofs.isFixed);
  for (std::size_t i = 0; i < count; ++i) {
    std::vector<std::int32_t>& list = dofs.isFixed[i] != 0 ? dofs.fixed : dofs.equations;
    dofs.places[i] = static_cast<std::int32_t>(list.size());
    list.push_back(static_cast<std::int32_t>(i));
  }
}

}  // namespace kvx
