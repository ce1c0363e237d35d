#include "renumber/breadth_first.h"

namespace kvx {

namespace {

std::int64_t DegreeOf(const NodeGraph& graph, std::int32_t node) {
  const auto at = static_cast<std::size_t>(node);
  return graph.begins[at + 1] - graph.begins[at];
}

std::int32_t HeightOf(const Levels& levels) {
  return levels.level[static_cast<std::size_t>(levels.reached.back())];
}

}  // namespace

void InitLevels(std::int32_t nodes, Levels& levels) {
  levels.level.assign(static_cast<std::size_t>(nodes), -1);
  levels.reached.clear();
}

void FindLevels(const NodeGraph& graph, std::int32_t start, Levels& levels) {
  for (const std::int32_t node : levels.reached) levels.level[static_cast<std::size_t>(node)] = -1;
  levels.reached.assign(1, start);
  levels.level[static_cast<std::size_t>(start)] = 0;
  for (std::size_t k = 0; k < levels.reached.size(); ++k) {
    const auto node = static_cast<std::size_t>(levels.reached[k]);
    for (std::int64_t i = graph.begins[node]; i < graph.begins[node + 1]; ++i) {
      const std::int32_t other = graph.neighbours[static_cast<std::size_t>(i)];
      std::int32_t& level = levels.level[static_cast<std::size_t>(other)];
      if (level >= 0) continue;
      level = levels.level[node] + 1;
      levels.reached.push_back(other);
    }
  }
}

std::int32_t FindEndNode(const NodeGraph& graph, std::int32_t start, Levels& levels) {
  FindLevels(graph, start, levels);
  for (;;) {
    const std::int32_t height = HeightOf(levels);
    std::int32_t best = levels.reached.back();
    for (std::size_t k = levels.reached.size(); k-- > 0;) {
      const std::int32_t node = levels.reached[k];
      if (levels.level[static_cast<std::size_t>(node)] != height) break;
      if (DegreeOf(graph, node) < DegreeOf(graph, best)) best = node;
    }
    FindLevels(graph, best, levels);
    if (HeightOf(levels) <= height) return best;
  }
}

}  // namespace kvx
