// A notice to the user, for example why the run cannot go on. The call waits until it is dismissed.
//
// Windows: a modal message box without owner window, titled "Warning!", with an OK button only.
// POSIX: the title, the text and a request to press Enter, in UTF-8 on standard error. The call
// returns after a line on standard input; the end of the input counts as a line.
#pragma once

namespace korvex {

inline constexpr const char* NoticeTitle = "Warning!";

// Shows `text` (UTF-8) and returns when the user has dismissed it. No string, so that the call
// needs no memory on POSIX: it may be the last one before memory is used up.
void ShowNotice(const char* text);

}  // namespace korvex
