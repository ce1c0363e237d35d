// The calculation log "计算日志.txt": its name, and how it is opened.
//
// POSIX: the file name is the text in GBK bytes. A UTF-8 terminal cannot show them; therefore a
// symbolic link with the UTF-8 name is made beside the file. A failure to make it is ignored.
// Windows: the name in UTF-16, which is right under every code page; there is no link.
#pragma once

#include <filesystem>
#include <fstream>

namespace korvex {

// The name in UTF-8, for messages and for the link.
inline constexpr const char* CalcLogName = u8"计算日志.txt";

// The name of the file in its folder.
std::filesystem::path CalcLogFile();

// Makes the link beside the file that `folder` holds, or will hold.
void LinkCalcLog(const std::filesystem::path& folder);

// Creates or truncates the file in the current directory, opens `log` on it and makes the link. If
// the file cannot be opened, `log` stays closed.
void OpenCalcLog(std::ofstream& log);

}  // namespace korvex
