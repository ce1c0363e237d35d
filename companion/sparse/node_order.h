// An order of the nodes for the sparse factorisation: nested dissection (George 1973) by METIS
// (Karypis & Kumar 1998).
#pragma once

#include <cstdint>
#include <vector>

#include "renumber/node_graph.h"
#include "sparse/free_dofs.h"

namespace kvx {

// The graph of the nodes that have a free dof.
struct FreeGraph {
  NodeGraph graph;
  std::vector<std::int32_t> nodes;  // [nodes of graph] of the model, ascending
  std::vector<std::int32_t> dofs;   // [nodes of graph] free dofs of each, 1 .. 6
};

// graph: of all nodes of the model.
void BuildFreeGraph(const NodeGraph& graph, const FreeDofs& dofs, FreeGraph& free);

// order: order[k] is the node of `graph` at place k.
// Throws a Stop where memory is too small or METIS gives none.
void FindSparseOrder(const NodeGraph& graph, std::vector<std::int32_t>& order);

// The free dofs in the order of their nodes: places[i] is the place of free dof i.
// order: of the nodes of free.graph.
std::vector<std::int32_t> PlaceFreeDofs(const FreeGraph& free,
                                        const std::vector<std::int32_t>& order);

}  // namespace kvx
