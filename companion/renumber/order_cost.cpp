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
  const std::vector<std::int32_t> places = InvertOrder(order);
  OrderCost cost;
  for (std::size_t node = 0; node < places.size(); ++node) {
    std::int32_t first = places[node];
    for (std::int64_t k = graph.begins[node]; k < graph.begins[node + 1]; ++k) {
      const auto other = static_cast<std::size_t>(graph.neighbours[static_cast<std::size_t>(k)]);
      first = std::min(first, places[other]);
    }
    for (std::int32_t d = 0; d < korvex::DofsPerNode; ++d) {
      const double height =
          static_cast<double>(korvex::DofsPerNode) * (places[node] - first) + d + 1;
      cost.entries += height;
      cost.work += height * height;
    }
  }
  return cost;
}

}  // namespace kvx
