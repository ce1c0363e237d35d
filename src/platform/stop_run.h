// The program's ways to fail, and the one way in which a run ends early.
//
// A run that cannot go on throws `RunStopped`; the run driver alone catches it. Unwinding closes
// every open file, and a test can run the program's parts in its own process.
#pragma once

#include <string>

namespace korvex {

// Thrown when the run ends early, after the user has been told why.
struct RunStopped {
  int exitStatus;  // of the process
};

// Fatal input or set-up error: a blocking notice with `text` (UTF-8), then `RunStopped` with 1.
[[noreturn]] void StopWithNotice(const std::string& text);

// A result file that cannot be opened: `gbkText` and a line end on standard output, a wait for one
// character on standard input, then `RunStopped` with 1.
[[noreturn]] void StopUnwritable(const char* gbkText);

// An output file that could not be written whole: one line on standard error. The run goes on, but
// must not pretend success. `name`: UTF-8.
void ReportIncompleteFile(const std::string& name);

// How many files have been reported since the process began.
int CountIncompleteFiles();

// An inconsistency that does not stop the run: "错误!" and a line end on standard output.
void ReportInconsistency();

}  // namespace korvex
