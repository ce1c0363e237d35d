// The writer of model files: tables -> text.
//
// Each number is written as the shortest text that gives the same double when it is read. Tables
// that are written and read again have the same bits (a NaN keeps only its sign).
#pragma once

#include <string>

#include "deck/model_tables.h"

namespace korvex {

// Returns the text of a model file with these tables. The counts in the text are the sizes of the
// tables; the counts in `tables` are ignored. The tables of one element kind must have matching
// sizes.
std::string WriteTables(const ModelTables& tables);

}  // namespace korvex
