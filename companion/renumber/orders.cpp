#include "renumber/orders.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

#include "base/vector3.h"
#include "renumber/breadth_first.h"

namespace kvx {

namespace {

// The box's extent and the node's coordinates, along axis i of 0 .. 2.
using Box = std::array<std::array<double, 2>, 3>;

korvex::Vector3 Coordinates(const korvex::Node& node) {
  korvex::Vector3 place{node.x, node.y, node.z};
  for (double& x : place) x = std::isfinite(x) ? x : 0.0;  // a NaN has no place in an order
  return place;
}

template <typename Function>
void ForNeighbours(const NodeGraph& graph, std::int32_t node, const Function& f) {
  const auto at = static_cast<std::size_t>(node);
  for (std::int64_t k = graph.begins[at]; k < graph.begins[at + 1]; ++k) {
    f(graph.neighbours[static_cast<std::size_t>(k)]);
  }
}

}  // namespace

std::vector<std::int32_t> GivenOrder(const NodeGraph& graph) {
  std::vector<std::int32_t> order(static_cast<std::size_t>(CountNodes(graph)));
  std::iota(order.begin(), order.end(), 0);
  return order;
}

std::vector<std::int32_t> ReverseCuthillMckee(const NodeGraph& graph) {
  const std::int32_t n = CountNodes(graph);
  std::vector<std::int32_t> order;
  order.reserve(static_cast<std::size_t>(n));
  std::vector<bool> isNumbered(static_cast<std::size_t>(n), false);
  Levels levels;
  InitLevels(n, levels);
  const auto degree = [&](std::int32_t node) {
    const auto at = static_cast<std::size_t>(node);
    return graph.begins[at + 1] - graph.begins[at];
  };
  const auto number = [&](std::int32_t node) {
    isNumbered[static_cast<std::size_t>(node)] = true;
    order.push_back(node);
  };
  std::vector<std::int32_t> next;
  for (std::int32_t seed = 0; seed < n; ++seed) {
    if (isNumbered[static_cast<std::size_t>(seed)]) continue;
    std::size_t k = order.size();
    number(FindEndNode(graph, seed, levels));
    for (; k < order.size(); ++k) {
      next.clear();
      ForNeighbours(graph, order[k], [&](std::int32_t other) {
        if (!isNumbered[static_cast<std::size_t>(other)]) next.push_back(other);
      });
      std::sort(next.begin(), next.end(), [&](std::int32_t a, std::int32_t b) {
        return std::make_pair(degree(a), a) < std::make_pair(degree(b), b);
      });
      std::for_each(next.begin(), next.end(), number);
    }
  }
  std::reverse(order.begin(), order.end());
  return order;
}

std::vector<std::int32_t> SortAlongLongestAxis(const korvex::ModelTables& tables) {
  Box box{};
  for (std::size_t k = 0; k < tables.Nodes.size(); ++k) {
    const korvex::Vector3 place = Coordinates(tables.Nodes[k]);
    for (std::size_t i = 0; i < 3; ++i) {
      box[i][0] = k == 0 ? place[i] : std::min(box[i][0], place[i]);
      box[i][1] = k == 0 ? place[i] : std::max(box[i][1], place[i]);
    }
  }
  std::array<std::size_t, 3> axes{0, 1, 2};
  std::stable_sort(axes.begin(), axes.end(), [&](std::size_t a, std::size_t b) {
    return box[a][1] - box[a][0] > box[b][1] - box[b][0];
  });
  std::vector<std::int32_t> order(tables.Nodes.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
    const korvex::Vector3 p = Coordinates(tables.Nodes[static_cast<std::size_t>(a)]);
    const korvex::Vector3 q = Coordinates(tables.Nodes[static_cast<std::size_t>(b)]);
    for (const std::size_t axis : axes) {
      if (p[axis] != q[axis]) return p[axis] < q[axis];
    }
    return false;
  });
  return order;
}

void FindBestOrder(const korvex::ModelTables& tables, const NodeGraph& graph, BestOrder& best) {
  best.order = GivenOrder(graph);
  best.name = "given";
  best.cost = best.givenCost = MeasureOrder(graph, best.order);
  const auto consider = [&](std::vector<std::int32_t> order, const char* name) {
    const OrderCost cost = MeasureOrder(graph, order);
    if (cost.work >= best.cost.work) return;
    best.order = std::move(order);
    best.name = name;
    best.cost = cost;
  };
  consider(ReverseCuthillMckee(graph), "reverse Cuthill-McKee");
  consider(SloanOrder(graph, OriginalWeights), "Sloan");
  consider(SloanOrder(graph, ScaledWeights), "scaled Sloan");
  consider(SortAlongLongestAxis(tables), "longest axis");
}

}  // namespace kvx
