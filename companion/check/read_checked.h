// Reads the text of a model file with the solver's reader, for the checks: the tables, and the line
// of each row.
#pragma once

#include <string_view>

#include "check/checked_model.h"

namespace kvx {

// Fills `model`, which must be empty. Throws a Stop where the reader does.
void ReadChecked(std::string_view text, CheckedModel& model);

}  // namespace kvx
