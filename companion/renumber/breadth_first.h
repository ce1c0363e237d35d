// Levels of a graph from a start node, and a node at the far end of a component.
#pragma once

#include <cstdint>
#include <vector>

#include "renumber/node_graph.h"

namespace kvx {

struct Levels {
  std::vector<std::int32_t> level;    // [nodes] distance from the start; -1: not reached
  std::vector<std::int32_t> reached;  // the nodes in the order of their levels
};

// Fills the levels of the nodes that can be reached from `start`. `levels` must come from
// InitLevels or from a call before; only the entries of its `reached` are set back, so that many
// small components cost no more than one large one.
void InitLevels(std::int32_t nodes, Levels& levels);
void FindLevels(const NodeGraph& graph, std::int32_t start, Levels& levels);

// Returns a node of start's component that lies nearly as far from another as two nodes can (George
// & Liu 1979: again from a node of least degree in the last level, until the number of levels does
// not grow). On return `levels` are those from it.
std::int32_t FindEndNode(const NodeGraph& graph, std::int32_t start, Levels& levels);

}  // namespace kvx
