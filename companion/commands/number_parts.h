// The separate parts of a model by element: what other elements connect, directly or through
// others.
#pragma once

#include <cstdint>
#include <vector>

#include "deck/model_tables.h"

namespace kvx {

// The part of each element, from 1 as `kvx check` numbers them: four-node shells, three-node
// shells, beams. The tables are the checks' for a moment, because a copy may be large; they come
// back as they were.
void NumberParts(korvex::ModelTables& tables, std::vector<std::int32_t>& numbers);

}  // namespace kvx
