// Answers the notices that a piece of work shows, as their reader would, and keeps what they say.
//
// A notice is kept as its title, a line end and its text, both UTF-8. Windows: the box of the
// process is looked at and its button pressed; where it has another button than one OK, an
// icon or an owner, a further line says so. POSIX: standard error is taken apart, standard input is
// at its end.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace korvex::test {

// What is kept of a notice of the program with `text` (UTF-8).
inline std::string ExpectedNotice(const std::string& text) { return "Warning!\n" + text; }

// Runs `work` in this process and returns the notices that it has shown, in order. `work` may not
// throw. POSIX: what it writes to standard error besides comes last.
std::vector<std::string> CollectNotices(const std::function<void()>& work);

}  // namespace korvex::test
