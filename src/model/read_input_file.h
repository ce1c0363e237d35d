// Reads a model file into the Model: its tables, and the elements that its rows describe.
//
// A listener of the reader (deck/row_listener.h) makes each element as soon as its row is read. So
// the run stops at the first row with a wrong reference.
#pragma once

#include <string>
#include <string_view>

#include "model/model.h"

namespace korvex {

// Fills `model`, which must be empty, from the file. Throws a Stop where the file cannot be read,
// where ReadTables throws one, where a reference of an element leads outside its table, and where
// the memory is too small for the elements.
void ReadInputFile(const std::string& fileName, Model& model);

// The same from the text of a model file.
void ReadInputText(std::string_view text, Model& model);

}  // namespace korvex
