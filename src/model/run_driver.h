// The run: the sequence of all stages, its console lines and its calculation log.
#pragma once

namespace korvex {

// Solves the model in the current directory and returns the process's exit status: 0 after a
// complete run, 1 where it ended early.
int RunKorvex();

}  // namespace korvex
