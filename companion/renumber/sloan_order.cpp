#include "renumber/sloan_order.h"

#include <algorithm>

#include "renumber/breadth_first.h"
#include "renumber/bucket_queue.h"

namespace kvx {

namespace {

std::size_t At(std::int32_t node) { return static_cast<std::size_t>(node); }

enum class Front : std::uint8_t { Inactive, Preactive, Active, Numbered };

struct Sloan {
  const NodeGraph& graph;
  SloanWeights weights;
  std::int32_t opening = 0;  // weight within this component
  std::vector<Front> state;
  BucketQueue queue;
};

std::int32_t DegreeOf(const NodeGraph& graph, std::int32_t node) {
  return static_cast<std::int32_t>(graph.begins[At(node) + 1] - graph.begins[At(node)]);
}

template <typename Function>
void ForNeighbours(const NodeGraph& graph, std::int32_t node, const Function& f) {
  for (std::int64_t k = graph.begins[At(node)]; k < graph.begins[At(node) + 1]; ++k) {
    f(graph.neighbours[static_cast<std::size_t>(k)]);
  }
}

// The node opens one node less than before.
void Promote(std::int32_t node, Sloan& sloan) {
  Front& state = sloan.state[At(node)];
  if (state == Front::Numbered) return;
  if (state == Front::Inactive) {
    state = Front::Preactive;
  } else {
    RemoveNode(node, sloan.queue);
  }
  sloan.queue.priority[At(node)] += sloan.opening;
  PushNode(node, sloan.queue);
}

// The first priorities of a component's nodes, from 0 on.
void RatePriorities(const Levels& fromEnd, Sloan& sloan) {
  std::int32_t largest = 0;
  for (const std::int32_t node : fromEnd.reached) {
    largest = std::max(largest, DegreeOf(sloan.graph, node));
  }
  const std::int32_t levels = fromEnd.level[At(fromEnd.reached.back())];
  // The lists of priorities shall not be many more than the nodes: a long chain has many levels.
  constexpr std::int32_t MostScale = 64;
  const std::int32_t scale =
      sloan.weights.isScaled ? std::clamp(levels / std::max(largest, 1), 1, MostScale) : 1;
  sloan.opening = sloan.weights.opening * scale;
  for (const std::int32_t node : fromEnd.reached) {
    const std::int32_t opens = DegreeOf(sloan.graph, node) + 1;
    sloan.queue.priority[At(node)] =
        sloan.weights.distance * fromEnd.level[At(node)] + sloan.opening * (largest + 1 - opens);
  }
  ReserveQueue(sloan.weights.distance * levels + sloan.opening * (largest + 2), sloan.queue);
}

// Numbers a component from `start` towards the end that the levels are counted from.
void NumberComponent(std::int32_t start, Sloan& sloan, std::vector<std::int32_t>& order) {
  const NodeGraph& graph = sloan.graph;
  sloan.state[At(start)] = Front::Preactive;
  PushNode(start, sloan.queue);
  for (std::int32_t node = start; (node = PopNode(sloan.queue)) >= 0;) {
    Front& state = sloan.state[At(node)];
    const bool isNew = state == Front::Preactive;
    state = Front::Numbered;
    order.push_back(node);
    ForNeighbours(graph, node, [&](std::int32_t other) {
      if (isNew) Promote(other, sloan);
    });
    ForNeighbours(graph, node, [&](std::int32_t other) {
      if (sloan.state[At(other)] != Front::Preactive) return;
      Promote(other, sloan);
      sloan.state[At(other)] = Front::Active;
      ForNeighbours(graph, other, [&](std::int32_t next) { Promote(next, sloan); });
    });
  }
}

}  // namespace

std::vector<std::int32_t> SloanOrder(const NodeGraph& graph, const SloanWeights& weights) {
  const std::int32_t n = CountNodes(graph);
  Sloan sloan{graph, weights, 0, std::vector<Front>(At(n), Front::Inactive), {}};
  InitQueue(n, sloan.queue);
  std::vector<std::int32_t> order;
  order.reserve(At(n));
  Levels levels;
  InitLevels(n, levels);
  for (std::int32_t seed = 0; seed < n; ++seed) {
    if (sloan.state[At(seed)] != Front::Inactive) continue;
    FindEndNode(graph, seed, levels);
    const std::int32_t start = levels.reached.back();
    RatePriorities(levels, sloan);
    NumberComponent(start, sloan, order);
  }
  return order;
}

}  // namespace kvx
