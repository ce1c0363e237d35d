// Chinese texts in the encoding of the console, from tables that are not ours.
#pragma once

#include <string>

namespace korvex::test {

// `utf8` in GBK: POSIX by iconv, Windows by code page 936.
std::string ConvertToGbk(const std::string& utf8);

}  // namespace korvex::test
