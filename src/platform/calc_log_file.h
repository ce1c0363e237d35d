// Opens the calculation log "计算日志.txt" in the current directory.
//
// POSIX: the name is the text's GBK bytes. Because a UTF-8 terminal cannot show them, a symbolic
// link with the UTF-8 name is laid beside the file; if that fails, nothing is said.
// Windows: the wide name, which is right under every code page.
#pragma once

#include <fstream>

namespace korvex {

// The name in UTF-8, for messages and for the link.
inline constexpr const char* CalcLogName = u8"计算日志.txt";

// Creates or truncates the log and leaves `log` open on it; a closed `log` afterwards means that
// the file could not be opened.
void OpenCalcLog(std::ofstream& log);

}  // namespace korvex
