// What the sparse factor of an order takes, from the graph of the nodes alone.
//
// The elimination tree (Liu 1990, sec. 5.3) and the column counts by row subtrees (Gilbert, Ng &
// Peyton 1994) give each column's length without the factor itself, in nearly linear time. Nodes
// count with their dofs. Entries that are zero in the matrix count like others.
#pragma once

#include <cstdint>
#include <vector>

#include "renumber/node_graph.h"

namespace kvx {

struct FactorSize {
  double entries = 0.0;  // of L, its diagonal included
  double flops = 0.0;    // the sum of the squared column lengths: a product and a sum each
  double front = 0.0;    // the longest column
  // Entries at once of a multifrontal factorisation (Liu 1992): contributions that wait, as halves,
  // and the front in work, whole; without and with the part of L that is done.
  double stack = 0.0, peak = 0.0;
  std::vector<std::int64_t> lengths;  // [nodes] by places: of the node's first column, dofs
};

// dofs: [nodes of graph] how many each node has; order: as NodeOrder's, a permutation.
void MeasureFactor(const NodeGraph& graph, const std::vector<std::int32_t>& dofs,
                   const std::vector<std::int32_t>& order, FactorSize& size);

}  // namespace kvx
