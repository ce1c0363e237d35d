// What ends a run early, as data: the kind of failure and its text.
//
// Whoever cannot go on throws a Stop. Only the run, or another program that calls the same
// routines, catches it, shows it and chooses the exit status. Unwinding closes every open file.
#pragma once

#include <string>

namespace korvex {

enum class StopKind {
  Notice,      // wrong input, or a model that cannot be solved here
  ResultFile,  // an output file that cannot be opened
};

struct Stop {
  StopKind kind;
  std::string text;  // UTF-8, for the user
};

}  // namespace korvex
