// The run: all stages in order, what is said between them, the calculation log, and how it ends.
//
// Only here is a user spoken to: lines on standard output, notices, one line on standard error for
// a file that could not be written whole, and the exit status.
#pragma once

#include <ostream>

#include "run/stages.h"

namespace korvex {

// Solves the model in the current directory and returns the process's exit status: 0 after a
// complete run, 1 where it ended early or a file is incomplete.
int RunKorvex();

// The front half: from "fem_solving.txt" to the assembled, loaded and supported system, with the
// lines that the console and the log get. log: the calculation log.
void AssembleSystem(Job& job, std::ostream& log);

}  // namespace korvex
