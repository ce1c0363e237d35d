#include "sparse/node_order.h"

#include "base/dof_counts.h"

namespace kvx {

void BuildFreeGraph(const NodeGraph& graph, const FreeDofs& dofs, FreeGraph& free) {
  constexpr std::size_t Dofs = korvex::DofsPerNode;
  const auto count = static_cast<std::size_t>(CountNodes(graph));
  std::vector<std::int32_t> freeCounts(count, 0), places(count, -1);
  for (const std::int32_t equation : dofs.equations) {
    ++freeCounts[static_cast<std::size_t>(equation) / Dofs];
  }
  free = {};
  for (std::size_t node = 0; node < count; ++node) {
    if (freeCounts[node] == 0) continue;
    places[node] = static_cast<std::int32_t>(free.nodes.size());
    free.nodes.push_back(static_cast<std::int32_t>(node));
    free.dofs.push_back(freeCounts[node]);
  }
  free.graph.begins.push_back(0);
  for (const std::int32_t node : free.nodes) {
    const auto i = static_cast<std::size_t>(node);
    for (std::int64_t k = graph.begins[i]; k < graph.begins[i + 1]; ++k) {
      const auto other = static_cast<std::size_t>(graph.neighbours[static_cast<std::size_t>(k)]);
      if (places[other] >= 0) free.graph.neighbours.push_back(places[other]);
    }
    free.graph.begins.push_back(static_cast<std::int64_t>(free.graph.neighbours.size()));
  }
}

std::vector<std::int32_t> PlaceFreeDofs(const FreeGraph& free,
                                        const std::vector<std::int32_t>& order) {
  std::vector<std::int32_t> firsts(free.dofs.size() + 1, 0);  // free dof of a node
  for (std::size_t i = 0; i < free.dofs.size(); ++i) firsts[i + 1] = firsts[i] + free.dofs[i];
  std::vector<std::int32_t> places(static_cast<std::size_t>(firsts.back()));
  std::int32_t place = 0;
  for (const std::int32_t node : order) {
    const auto i = static_cast<std::size_t>(node);
    for (std::int32_t dof = firsts[i]; dof < firsts[i + 1]; ++dof) {
      places[static_cast<std::size_t>(dof)] = place++;
    }
  }
  return places;
}

}  // namespace kvx
