// A notice to the user, for example why the run cannot go on. The call waits until it is dismissed.
//
// Windows: a modal message box without owner window, titled "Warning!", with an OK button only.
// POSIX: the title, the text and a request to press Enter, in UTF-8 on standard error. The call
// returns after a line on standard input; the end of the input counts as a line.
#pragma once

#include <string>

namespace korvex {

inline constexpr const char* NoticeTitle = "Warning!";

// Shows `text` (UTF-8) and returns when the user has dismissed it.
void ShowNotice(const std::string& text);

}  // namespace korvex
