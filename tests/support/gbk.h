// Chinese texts in the encoding of the console, converted by the system, not by our own tables.
#pragma once

#include <string>

namespace korvex::test {

// `utf8` in GBK: POSIX by iconv, Windows by code page 936.
std::string ConvertToGbk(const std::string& utf8);

}  // namespace korvex::test
