// The four load tables of a model, taken apart from its structure: read, scaled, added, written.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "deck/model_tables.h"

namespace kvx {

// The loads of a text as a model file of its own, with an empty structure.
struct LoadText {
  std::string text;
  std::size_t emptyLines = 0;    // before the loads, in this text
  std::size_t skippedLines = 0;  // before the loads, in the text that they come from
};

// loads: the sections NFOR .. NDL_B of a model file, or a whole model file, whose structure is left
// out. Throws a Stop with "line 1: ..." where the text is neither.
void IsolateLoads(std::string_view loads, LoadText& isolated);

// Whether there is any row of loads.
bool HasLoads(const korvex::ModelTables& tables);

// Exchanges the loads of the two.
void SwapLoads(korvex::ModelTables& a, korvex::ModelTables& b);

// Appends factor x the loads of `from` to those of `to`, in the order of the rows.
void AddScaledLoads(const korvex::ModelTables& from, double factor, korvex::ModelTables& to);

// The text of a model file with the structure of another text, as it stands there, and the loads of
// `tables`. structure: a model file that is read without a slip. Throws a Stop where it has no line
// "Number of forces:NFOR=".
std::string ComposeModelText(std::string_view structure, const korvex::ModelTables& tables);

}  // namespace kvx
