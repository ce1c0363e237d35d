// The model file as one text in memory.
#pragma once

#include <fstream>
#include <string>

namespace korvex {

// Opens `stream` on the file and tells whether it can be read. A folder of that name can be opened
// on some systems but read on none.
bool OpenInputFile(const std::string& fileName, std::ifstream& stream);

// text: the bytes of the file. Throws a Stop where the file cannot be read or is larger than
// memory.
void LoadText(const std::string& fileName, std::string& text);

}  // namespace korvex
