// Reads the model file into the tables of the Model and builds the element objects on the way.
//
// The file is read in one pass with formatted reads whose results are not checked: a read that
// fails leaves its fields at the value 0 that the table was created with, and the next read goes on
// where it stopped. Every section stands in its fixed place, with a count of 0 where it is empty.
#pragma once

#include <fstream>
#include <string>

#include "model/model.h"

namespace korvex {

// The one release of the file format that is read.
inline constexpr double ModelFileRelease = 3.0;

// Opens `stream` on the file and tells whether it can be read. A folder of that name can be opened
// on some systems but read on none.
bool OpenInputFile(const char* fileName, std::ifstream& stream);

// Fills `model` from the file. Stops the run with a notice where the file cannot be opened, its
// release differs from ModelFileRelease, a count is negative, a reference that is used leads outside
// its table, or the file or a table of it is larger than memory.
void ReadInputFile(const char* fileName, Model& model);

// The same from the text of the file.
void ReadInputText(std::string text, Model& model);

}  // namespace korvex
