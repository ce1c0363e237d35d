// Answers the notices that a test's work shows, as a user does, and collects them.
//
// A collected notice is its title, a line end and its text, both UTF-8. Windows: reads the message
// box of the process and presses its button; if the box has any buttons but one OK, an icon or an
// owner, a further line says so. POSIX: splits standard error into notices; standard input is
// empty.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace korvex::test {

// The collected form of a notice of the program with `text` (UTF-8).
inline std::string ExpectedNotice(const std::string& text) { return "Warning!\n" + text; }

// Runs `work` in this process and returns the notices that it has shown, in order. `work` must not
// throw. POSIX: anything else that it writes to standard error comes last.
std::vector<std::string> CollectNotices(const std::function<void()>& work);

}  // namespace korvex::test
