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

namespace kvx {

// The order of the file.
std::vector<std::int32_t> GivenOrder(const NodeGraph& graph);

// Reverse Cuthill-McKee (Cuthill & McKee 1969; George & Liu 1981, ch. 4): level by level from an
// end node, neighbours in ascending degree, all reversed.
std::vector<std::int32_t> ReverseCuthillMckee(const NodeGraph& graph);

// Sloan's order (Sloan 1986): next is the node that opens few new nodes and lies far from the other
// end. Priority: distance to the end - 2 (neighbours it would open). With a heap: n log n.
std::vector<std::int32_t> SloanOrder(const NodeGraph& graph);

// Sorted along the longest axis of the nodes' box, then along the second, then the third.
std::vector<std::int32_t> SortAlongLongestAxis(const korvex::ModelTables& tables);

// The best of the orders above by work; of equal ones the first. The given order is the first, so
// the best is never worse.
struct BestOrder {
  std::vector<std::int32_t> order;
  std::string name = "given";  // or "reverse Cuthill-McKee", "Sloan", "longest axis"
  OrderCost cost;
  OrderCost givenCost;
};
// graph: that of the tables.
void FindBestOrder(const korvex::ModelTables& tables, const NodeGraph& graph, BestOrder& best);

}  // namespace kvx
