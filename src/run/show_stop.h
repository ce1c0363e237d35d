// How a run tells its user what has stopped it, or what it could not finish.
#pragma once

#include <string>

#include "report/stop.h"

namespace korvex {

// Shows the stop and waits until the user has answered. A notice blocks as platform/notice.h says;
// a result file's text goes to standard output in GBK, with a line end, and one character of
// standard input answers it.
void ShowStop(const Stop& stop);

// One line on standard error: the output file `name` (UTF-8) could not be written whole.
void ReportIncompleteFile(const std::string& name);

// "错误!" and a line end on standard output: the counts of a record disagree; the run goes on.
void ReportInconsistency();

}  // namespace korvex
