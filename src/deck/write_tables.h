// The writer of model files: tables -> text.
//
// Each number is the shortest text that reads back as the same double, so that written tables read
// back bit for bit (of a NaN, its sign alone).
#pragma once

#include <string>

#include "deck/model_tables.h"

namespace korvex {

// The text of a model file with these tables. A count is that of the table's rows; the counts in
// `tables` are not looked at. An element kind must have as many nodes, sections and properties as
// it has elements.
std::string WriteTables(const ModelTables& tables);

}  // namespace korvex
