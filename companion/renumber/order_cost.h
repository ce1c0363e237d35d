// What an order of the nodes costs: the entries of the skyline and the work of its factorisation.
//
// Column d of a node at place p whose first neighbour stands at place m <= p holds the rows from
// m's first equation to its own: height 6 (p - m) + d + 1. Entries: the sum of all heights. Work:
// the sum of w^2 over all rows, where w columns to the right of the row's diagonal reach up to it
// (George & Liu 1981, sec. 4.2): each pair of them has a multiplication and a subtraction there.
// The squares of the heights would count what a long column has beside short ones, too: up to eight
// times as much on box girders that are numbered face by face.
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
