// What a checked model consists of, for the end of `kvx check` and for its JSON.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "commands/check_model.h"

namespace kvx {

// The rows of each table by the key of its count, in the order of the file: {"NMT", 2}, ...
std::vector<std::pair<std::string, std::size_t>> CountTables(const CheckedModel& model);

// Sentences about the model, one a line of a report: "3363 nodes, 3280 four-node shells, 320
// beams"; the sums of its loads; its mass; the size of its matrix. What the model does not have is
// left out.
std::vector<std::string> SummarizeModel(const CheckReport& report);

}  // namespace kvx
