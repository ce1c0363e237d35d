// Notices as message boxes.
#pragma once

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX 1  // as the standard library defines it
#include <windows.h>

#include <string>
#include <vector>

namespace korvex::test {

// The interval at which a wait for a message box looks for one.
inline constexpr DWORD LookEveryMilliseconds = 5;

// The message box that the process shows, or null.
HWND FindNotice(DWORD process);

// If the process shows a message box, adds it to `notices` in the form of notices.h and presses its
// first button.
void AnswerNotice(DWORD process, std::vector<std::string>& notices);

}  // namespace korvex::test
