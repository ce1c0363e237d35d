// Orders of the nodes that keep the skyline small.
//
// Each routine returns a permutation of all nodes: order[k] is the node at place k. Components are
// ordered one after the other, nodes without elements included.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "deck/model_tables.h"
#include "renumber/node_graph.h"
#include "renumber/order_cost.h"
#include "renumber/sloan_order.h"

namespace kvx {

// The order of the file.
std::vector<std::int32_t> GivenOrder(const NodeGraph& graph);

// Reverse Cuthill-McKee (Cuthill & McKee 1969; George & Liu 1981, ch. 4): level by level from an
// end node, neighbours in ascending degree, all reversed.
std::vector<std::int32_t> ReverseCuthillMckee(const NodeGraph& graph);

// Sorted along the longest axis of the nodes' box, then along the second, then the third.
std::vector<std::int32_t> SortAlongLongestAxis(const korvex::ModelTables& tables);

// The best of these orders and those of Sloan by work; of equal ones the first, which is the given
// one: the best is never worse.
struct BestOrder {
  std::vector<std::int32_t> order;
  // "given", "reverse Cuthill-McKee", "Sloan", "scaled Sloan" or "longest axis"
  std::string name = "given";
  OrderCost cost;
  OrderCost givenCost;
};
// graph: that of the tables.
void FindBestOrder(const korvex::ModelTables& tables, const NodeGraph& graph, BestOrder& best);

}  // namespace kvx
