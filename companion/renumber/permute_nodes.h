// A model with its nodes in another order: the rows of the nodes moved, all references to them
// changed. All other rows stay where they are.
#pragma once

#include <cstdint>
#include <vector>

#include "deck/model_tables.h"

namespace kvx {

// order: order[k] is the old row of the node at row k (NPOIN entries). References to nodes that do
// not exist stay as they are.
void PermuteNodes(const std::vector<std::int32_t>& order, korvex::ModelTables& tables);

// The same for tables that hold loads and supports alone, and no nodes.
// places: places[old row] is the new row (InvertOrder).
void MoveNodeReferences(const std::vector<std::int32_t>& places, korvex::ModelTables& tables);

}  // namespace kvx
