// Opens the calculation log "计算日志.txt" in the current directory.
//
// POSIX: the file name is the text in GBK bytes. A UTF-8 terminal cannot show them; therefore a
// symbolic link with the UTF-8 name is made beside the file. A failure to make it is ignored.
// Windows: the name in UTF-16, which is right under every code page.
#pragma once

#include <fstream>

namespace korvex {

// The name in UTF-8, for messages and for the link.
inline constexpr const char* CalcLogName = u8"计算日志.txt";

// Creates or truncates the file and opens `log` on it. If the file cannot be opened, `log` stays
// closed.
void OpenCalcLog(std::ofstream& log);

}  // namespace korvex
