// The one reader of model files: text -> tables.
//
// One pass with formatted reads in the manner of scanf (scan_text.h), whose results decide nothing:
// a read that fails leaves its fields at 0, and the next read goes on where it stopped. Every
// section stands in its fixed place, with a count of 0 where it is empty. A listener hears of each
// row as it is read.
#pragma once

#include <string>

#include "deck/model_tables.h"
#include "deck/row_listener.h"

namespace korvex {

// Fills `tables`, which are empty, from the text of a model file. Throws a Stop where the release
// differs from ModelFileRelease, the count of a table that is always allocated (materials,
// thicknesses, nodal points, restraints) is negative, or memory cannot hold a table. Other negative
// counts are kept and act as 0.
void ReadTables(std::string text, const RowListener& listener, ModelTables& tables);

}  // namespace korvex
