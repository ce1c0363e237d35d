// Messages to the user: what stopped the run, and which files are incomplete.
//
// Notices go to a message box or to standard error (platform/notice.h). Texts about result files
// that cannot be opened go to standard output in GBK.
#pragma once

#include <string>

#include "report/stop.h"

namespace korvex {

// Shows the text of `stop` and waits for the user: until the notice is dismissed, or, for a result
// file, for one character on standard input.
void ShowStop(const Stop& stop);

// Writes one line to standard error: the output file `name` (UTF-8) is incomplete.
void ReportIncompleteFile(const std::string& name);

// Writes "错误!" and a line end to standard output: the counts of a record differ; the run goes on.
void ReportInconsistency();

}  // namespace korvex
