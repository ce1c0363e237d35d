#include "renumber/order_cost.h"

#include <algorithm>

#include "base/dof_counts.h"

namespace kvx {

std::vector<std::int32_t> InvertOrder(const std::vector<std::int32_t>& order) {
  std::vector<std::int32_t> places(order.size());
  for (std::size_t k = 0; k < order.size(); ++k) {
    places[static_cast<std::size_t>(order[k])] = static_cast<std::int32_t>(k);
  }
  return places;
}

OrderCost MeasureOrder(const NodeGraph& graph, const std::vector<std::int32_t>& order) {
  constexpr int Dofs = korvex::DofsPerNode;
  const std::vector<std::int32_t> places = InvertOrder(order);
  // [places] by how many the nodes change that stand behind a place and reach up to it
  std::vector<std::int32_t> changes(order.size(), 0);
  OrderCost cost;
  for (std::size_t node = 0; node < places.size(); ++node) {
    std::int32_t first = places[node];
    for (std::int64_t k = graph.begins[node]; k < graph.begins[node + 1]; ++k) {
      const auto other = static_cast<std::size_t>(graph.neighbours[static_cast<std::size_t>(k)]);
      first = std::min(first, places[other]);
    }
    ++changes[static_cast<std::size_t>(first)];
    --changes[static_cast<std::size_t>(places[node])];
    for (int d = 0; d < Dofs; ++d) {
      cost.entries += static_cast<double>(Dofs) * (places[node] - first) + d + 1;
    }
  }
  std::int32_t front = 0;  // such nodes
  for (const std::int32_t change : changes) {
    front += change;
    for (int d = 0; d < Dofs; ++d) {
      const double columns = static_cast<double>(Dofs) * front + (Dofs - 1 - d);
      cost.work += columns * columns;
    }
  }
  return cost;
}

}  // namespace kvx
