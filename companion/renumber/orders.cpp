#include "renumber/orders.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <queue>
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

// States of a node in Sloan's order.
enum class Front : std::uint8_t { Inactive, Preactive, Active, Numbered };

// One component in Sloan's order.
struct Sloan {
  const NodeGraph& graph;
  std::vector<std::int64_t> priority;
  std::vector<Front> state;
  std::priority_queue<std::pair<std::int64_t, std::int32_t>> queue;  // old entries stay in it
};

// Weight of the nodes that a node would open against its distance to the end (Sloan 1986, table 1).
constexpr std::int64_t OpeningWeight = 2;

template <typename Function>
void ForNeighbours(const NodeGraph& graph, std::int32_t node, const Function& f) {
  const auto at = static_cast<std::size_t>(node);
  for (std::int64_t k = graph.begins[at]; k < graph.begins[at + 1]; ++k) {
    f(graph.neighbours[static_cast<std::size_t>(k)]);
  }
}

// The node opens one node less than before.
void Promote(std::int32_t node, Sloan& sloan) {
  const auto at = static_cast<std::size_t>(node);
  if (sloan.state[at] == Front::Numbered) return;
  if (sloan.state[at] == Front::Inactive) sloan.state[at] = Front::Preactive;
  sloan.priority[at] += OpeningWeight;
  sloan.queue.push({sloan.priority[at], node});
}

// Numbers a component from `start` towards the end that the levels are counted from.
void NumberComponent(std::int32_t start, const Levels& fromEnd, Sloan& sloan,
                     std::vector<std::int32_t>& order) {
  for (const std::int32_t node : fromEnd.reached) {
    const auto at = static_cast<std::size_t>(node);
    const std::int64_t degree = sloan.graph.begins[at + 1] - sloan.graph.begins[at];
    sloan.priority[at] = fromEnd.level[at] - OpeningWeight * (degree + 1);
  }
  sloan.state[static_cast<std::size_t>(start)] = Front::Preactive;
  sloan.queue.push({sloan.priority[static_cast<std::size_t>(start)], start});
  while (!sloan.queue.empty()) {
    const auto [priority, node] = sloan.queue.top();
    sloan.queue.pop();
    const auto at = static_cast<std::size_t>(node);
    if (sloan.state[at] == Front::Numbered || priority != sloan.priority[at]) continue;
    if (sloan.state[at] == Front::Preactive) {
      ForNeighbours(sloan.graph, node, [&](std::int32_t other) { Promote(other, sloan); });
    }
    sloan.state[at] = Front::Numbered;
    order.push_back(node);
    ForNeighbours(sloan.graph, node, [&](std::int32_t other) {
      if (sloan.state[static_cast<std::size_t>(other)] != Front::Preactive) return;
      Promote(other, sloan);
      sloan.state[static_cast<std::size_t>(other)] = Front::Active;
      ForNeighbours(sloan.graph, other, [&](std::int32_t next) { Promote(next, sloan); });
    });
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

std::vector<std::int32_t> SloanOrder(const NodeGraph& graph) {
  const std::int32_t n = CountNodes(graph);
  const auto size = static_cast<std::size_t>(n);
  Sloan sloan{
      graph, std::vector<std::int64_t>(size, 0), std::vector<Front>(size, Front::Inactive), {}};
  std::vector<std::int32_t> order;
  order.reserve(size);
  Levels levels;
  InitLevels(n, levels);
  for (std::int32_t seed = 0; seed < n; ++seed) {
    if (sloan.state[static_cast<std::size_t>(seed)] != Front::Inactive) continue;
    FindEndNode(graph, seed, levels);
    NumberComponent(levels.reached.back(), levels, sloan, order);
  }
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
  consider(SloanOrder(graph), "Sloan");
  consider(SortAlongLongestAxis(tables), "longest axis");
}

}  // namespace kvx
