// The run: all stages in order, the console lines between them, the calculation log, and the exit
// status.
//
// Only this folder writes to the user, by platform/notice.h and by itself: lines on standard
// output, notices, and one line on standard error for each file that could not be written
// completely.
#pragma once

#include <ostream>

#include "run/stages.h"

namespace korvex {

// Solves the model in the current directory. Returns the exit status of the process: 0 after a
// complete run, 1 if the run stopped early or a file is incomplete.
int RunKorvex();

// The first half: from "fem_solving.txt" to the assembled, loaded and supported system, with its
// lines on the console and in the log. log: the calculation log. Throws a Stop where a stage does.
void AssembleSystem(Job& job, std::ostream& log);

}  // namespace korvex
