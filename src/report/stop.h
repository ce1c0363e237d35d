// What ends a run early, as data: the kind of failure and its text.
//
// A routine that cannot go on throws a Stop. Only the run driver, or another program that calls the
// routines, catches it, shows it and chooses the exit status. On the way all open files are closed.
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
