#include "sparse/row_part.h"

#include <algorithm>
#include <numeric>

#include "base/dof_counts.h"
#include "report/check_memory.h"

namespace kvx {

namespace {

constexpr std::size_t Dofs = korvex::DofsPerNode;

std::size_t At(std::int32_t index) { return static_cast<std::size_t>(index); }

// Entries of A in the rows of a node of the graph.
std::uint64_t CountEntries(const FreeGraph& free, std::size_t node) {
  const auto dofs = static_cast<std::uint64_t>(free.dofs[node]);
  std::uint64_t entries = dofs * (dofs + 1) / 2;
  for (std::int64_t k = free.graph.begins[node]; k < free.graph.begins[node + 1]; ++k) {
    const std::size_t other = At(free.graph.neighbours[static_cast<std::size_t>(k)]);
    if (other > node) entries += dofs * static_cast<std::uint64_t>(free.dofs[other]);
  }
  return entries;
}

// Room for `count` more.
void ReserveMore(const char* what, std::size_t count, std::vector<std::int32_t>& items) {
  korvex::AllocateOrStop(what, count, sizeof(std::int32_t),
                         [&] { items.reserve(items.size() + count); });
}

// The elements of a kind that have a wanted node, with their nodes as the model numbers them.
template <std::size_t Nodes, typename Element>
void TakeElements(const std::vector<Element>& elements, const std::vector<std::int32_t>& nodes,
                  const std::vector<std::uint8_t>& isWanted, std::vector<Element>& takenElements,
                  std::vector<std::int32_t>& takenNodes, std::vector<std::int32_t>& numbers) {
  const auto touches = [&](std::size_t e) {
    const auto first = nodes.begin() + static_cast<std::ptrdiff_t>(e * Nodes);
    return std::any_of(first, first + Nodes,
                       [&](std::int32_t node) { return isWanted[At(node)] != 0; });
  };
  std::size_t count = 0;
  for (std::size_t e = 0; e < elements.size(); ++e) count += touches(e) ? 1U : 0U;
  korvex::ReserveItems("the elements of a rank", count, takenElements);
  ReserveMore("the nodes of a rank's elements", count * Nodes, takenNodes);
  ReserveMore("the numbers of a rank's elements", count, numbers);
  for (std::size_t e = 0; e < elements.size(); ++e) {
    if (!touches(e)) continue;
    takenElements.push_back(elements[e]);
    for (std::size_t k = 0; k < Nodes; ++k) takenNodes.push_back(nodes[e * Nodes + k]);
    numbers.push_back(static_cast<std::int32_t>(e));
  }
}

// Those that are wanted, and all others of the part's elements.
void NumberNodes(std::vector<std::uint8_t>& isThere, RowPart& part) {
  korvex::ModelTables& tables = part.model.Tables;
  const auto lists = {&tables.Shell4Nodes, &tables.Shell3Nodes, &tables.BeamNodes};
  for (const std::vector<std::int32_t>* list : lists) {
    for (const std::int32_t node : *list) isThere[At(node)] = 1;
  }
  std::vector<std::int32_t> numbers;
  korvex::AllocateItems("the numbers of the nodes", isThere.size(), numbers);
  const auto count = std::count(isThere.begin(), isThere.end(), std::uint8_t{1});
  ReserveMore("the nodes of a rank", static_cast<std::size_t>(count), part.nodes);
  for (std::size_t node = 0; node < isThere.size(); ++node) {
    if (isThere[node] == 0) continue;
    numbers[node] = static_cast<std::int32_t>(part.nodes.size());
    part.nodes.push_back(static_cast<std::int32_t>(node));
  }
  for (std::vector<std::int32_t>* list : lists) {
    for (std::int32_t& node : *list) node = numbers[At(node)];
  }
}

void TakeDofs(const FreeDofs& dofs, const std::vector<std::int32_t>& owners, int rank,
              RowPart& part) {
  const std::size_t count = part.nodes.size() * Dofs;
  ReserveMore("the equations of a rank", count, part.dofs.places);
  ReserveMore("the equations of a rank", count, part.dofs.equations);
  korvex::ReserveItems("the equations of a rank", count, part.dofs.isFixed);
  if (rank == 0) ReserveMore("the fixed degrees of freedom", dofs.fixed.size(), part.dofs.fixed);
  for (const std::int32_t node : part.nodes) {
    for (std::size_t d = 0; d < Dofs; ++d) {
      const std::size_t i = At(node) * Dofs + d;
      const auto equation = static_cast<std::int32_t>(part.dofs.places.size());
      part.dofs.places.push_back(dofs.places[i]);
      part.dofs.isFixed.push_back(dofs.isFixed[i]);
      if (dofs.isFixed[i] == 0 && owners[At(node)] == rank) {
        part.dofs.equations.push_back(equation);
      } else if (dofs.isFixed[i] != 0 && rank == 0) {
        part.dofs.fixed.push_back(equation);
      }
    }
  }
}

}  // namespace

std::vector<std::int32_t> ShareNodes(const FreeGraph& free, const std::vector<std::int32_t>& order,
                                     std::size_t nodes, int ranks) {
  std::vector<std::uint64_t> entries;
  korvex::AllocateItems("the entries of the nodes", order.size(), entries);
  for (std::size_t k = 0; k < order.size(); ++k) entries[k] = CountEntries(free, At(order[k]));
  const double whole =
      static_cast<double>(std::accumulate(entries.begin(), entries.end(), std::uint64_t{0}));
  std::vector<std::int32_t> owners;
  korvex::AllocateItems("the ranks of the nodes", nodes, owners);
  std::fill(owners.begin(), owners.end(), -1);
  double before = 0.0;
  for (std::size_t k = 0; k < order.size(); ++k) {
    const double middle = before + 0.5 * static_cast<double>(entries[k]);
    owners[At(free.nodes[At(order[k])])] =
        std::min(static_cast<std::int32_t>(middle / whole * ranks), ranks - 1);
    before += static_cast<double>(entries[k]);
  }
  return owners;
}

void MakeRowPart(const korvex::Model& model, const FreeDofs& dofs,
                 const std::vector<std::int32_t>& owners, int rank, RowPart& part) {
  part = {};
  std::vector<std::uint8_t> isWanted;
  korvex::AllocateItems("the nodes of a rank", owners.size(), isWanted);
  for (std::size_t node = 0; node < owners.size(); ++node)
    isWanted[node] = owners[node] == rank ? 1 : 0;
  if (rank == 0) {
    for (const std::int32_t equation : dofs.fixed) isWanted[At(equation) / Dofs] = 1;
  }
  const korvex::ModelTables& all = model.Tables;
  korvex::ModelTables& mine = part.model.Tables;
  TakeElements<korvex::NodesPerShell4>(model.Shell4Elements, all.Shell4Nodes, isWanted,
                                       part.model.Shell4Elements, mine.Shell4Nodes, part.elements);
  TakeElements<korvex::NodesPerShell3>(model.Shell3Elements, all.Shell3Nodes, isWanted,
                                       part.model.Shell3Elements, mine.Shell3Nodes, part.elements);
  TakeElements<korvex::NodesPerBeam>(model.BeamElements, all.BeamNodes, isWanted,
                                     part.model.BeamElements, mine.BeamNodes, part.elements);
  NumberNodes(isWanted, part);
  TakeDofs(dofs, owners, rank, part);
}

}  // namespace kvx
