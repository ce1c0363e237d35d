// What an order of the nodes costs: the entries of the skyline and the work of its factorisation.
//
// Column d of a node at place p whose first neighbour stands at place m <= p holds the rows from
// m's first equation to its own: height 6 (p - m) + d + 1. Entries: the sum of all heights; work:
// the sum of their squares, in floating-point operations (Bathe 1996, sec. 8.2.3).
#pragma once

#include <cstdint>
#include <vector>

#include "renumber/node_graph.h"

namespace kvx {

struct OrderCost {
  double entries = 0.0;  // stored entries, 8 bytes each
  double work = 0.0;     // floating-point operations
};

// order: order[k] is the node at place k; a permutation of all nodes.
OrderCost MeasureOrder(const NodeGraph& graph, const std::vector<std::int32_t>& order);

// The inverse permutation: places[node] is the node's place.
std::vector<std::int32_t> InvertOrder(const std::vector<std::int32_t>& order);

}  // namespace kvx
