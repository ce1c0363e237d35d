// Reads a model file into the Model: its tables, and the elements that its rows describe.
//
// Each element is built as soon as its row is read, so that a run stops at the first row that
// refers to nothing.
#pragma once

#include <string>

#include "model/model.h"

namespace korvex {

// Fills `model`, which is empty, from the file. Throws a Stop where the file cannot be read, for
// all that ReadTables stops for, where a reference that is used leads outside its table, and where
// memory cannot hold the elements.
void ReadInputFile(const std::string& fileName, Model& model);

// The same from the text of the file.
void ReadInputText(std::string text, Model& model);

}  // namespace korvex
