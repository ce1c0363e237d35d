// Opens the calculation log "计算日志.txt" in the current directory.
//
// POSIX: the name is the text's GBK bytes. Because a UTF-8 terminal cannot show them, a symbolic
// link with the UTF-8 name is laid beside the file; if that fails, nothing is said.
// Windows: the wide name, which is right under every code page.
#pragma once

#include <fstream>

namespace korvex {

// The name in UTF-8, for notices and for the link; spelled as in gbk_texts.h and for the same
// reason.
inline constexpr const char* Utf8CalcLogName =
    "\xE8\xAE\xA1\xE7\xAE\x97\xE6\x97\xA5\xE5\xBF\x97.txt";

// Creates or truncates the log and leaves `log` open on it; a closed `log` afterwards means that
// the file could not be opened.
void OpenCalcLog(std::ofstream& log);

}  // namespace korvex
