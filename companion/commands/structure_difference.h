// In what two models differ besides their loads.
#pragma once

#include <string>

#include "deck/model_tables.h"

namespace kvx {

// The first difference as the rest of a sentence about `other`: "has 12 nodes, not 10", "has node 5
// at (1, 2, 3), not at (1, 2, 4)", "has other supports". Empty where all tables before the loads
// have the same bits; of the supports only what they hold counts.
std::string DescribeDifference(const korvex::ModelTables& model, const korvex::ModelTables& other);

}  // namespace kvx
