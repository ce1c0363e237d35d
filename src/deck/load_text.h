// The model file as one text in memory.
//
// The file is read as bytes, without conversion of line ends or characters. Any file name is
// accepted, that of a device or pipe included, whose size is not known in advance.
#pragma once

#include <fstream>
#include <string>

namespace korvex {

// Opens `stream` on the file. Returns whether the file can be read. (Some systems can open a folder
// as a file, but none can read it.)
bool OpenInputFile(const std::string& fileName, std::ifstream& stream);

// text: empty; gets the bytes of the file. Throws a Stop where the file cannot be read or is larger
// than the memory.
void LoadText(const std::string& fileName, std::string& text);

}  // namespace korvex
