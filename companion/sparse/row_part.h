// The rows of the free dofs' stiffness, shared among ranks (ranks/ranks.h), and of each rank what
// it needs to form its own: the elements that touch them.
//
// An element between the rows of two ranks is formed by both. Each row gets its terms in the order
// of the tables, as on one rank: its entries have the same bits.
#pragma once

#include <cstdint>
#include <vector>

#include "model/model.h"
#include "sparse/free_dofs.h"
#include "sparse/node_order.h"

namespace kvx {

// The rank of each node that has a free dof: pieces of the order one after the other, with about as
// many entries each. Others: -1.
// free: of a model with `nodes` nodes; order: of its nodes (node_order.h). A rank may get none.
// Throws a Stop where memory is too small.
std::vector<std::int32_t> ShareNodes(const FreeGraph& free, const std::vector<std::int32_t>& order,
                                     std::size_t nodes, int ranks);

// Nodes are numbered anew, in the same sequence; places of free dofs are those of the whole model.
struct RowPart {
  korvex::Model model;  // elements and their nodes; no other table
  FreeDofs dofs;        // equations: of its rows. Rank 0 has all that are fixed, the others none
  std::vector<std::int32_t> nodes;     // their numbers in the whole model
  std::vector<std::int32_t> elements;  // theirs, each kind from 0
};

// owners: from ShareNodes. Throws a Stop where memory is too small.
void MakeRowPart(const korvex::Model& model, const FreeDofs& dofs,
                 const std::vector<std::int32_t>& owners, int rank, RowPart& part);

}  // namespace kvx
