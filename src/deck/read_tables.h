// The reader of model files: text -> tables.
//
// One pass with formatted reads as by scanf (scan_text.h). Their results are not checked: a read
// that fails leaves its fields at 0, and the next read begins where it stopped. All sections are
// present in a fixed order; an empty one has the count 0. A listener is called after each row.
#pragma once

#include <string_view>

#include "deck/model_tables.h"
#include "deck/row_listener.h"

namespace korvex {

// Fills `tables`, which must be empty, from the text of a model file. Throws a Stop where the
// release differs from ModelFileRelease, where the memory is too small for a table, and where the
// count of materials, thicknesses, nodal points or restraints is negative. Other negative counts
// are stored and act as 0.
void ReadTables(std::string_view text, const RowListener& listener, ModelTables& tables);

}  // namespace korvex
