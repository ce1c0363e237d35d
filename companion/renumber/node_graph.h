// Which nodes are coupled: two nodes are neighbours if an element has both.
#pragma once

#include <cstdint>
#include <vector>

#include "deck/model_tables.h"

namespace kvx {

// The neighbours of node i are neighbours[begins[i] .. begins[i + 1] - 1], ascending, each once, i
// itself not among them.
struct NodeGraph {
  std::vector<std::int64_t> begins;      // [NPOIN + 1]
  std::vector<std::int32_t> neighbours;  // [begins[NPOIN]]
};

inline std::int32_t CountNodes(const NodeGraph& graph) {
  return static_cast<std::int32_t>(graph.begins.size()) - 1;
}

// Fills `graph`. Nodes that do not exist are left out of their elements.
void BuildNodeGraph(const korvex::ModelTables& tables, NodeGraph& graph);

}  // namespace kvx
