// Runs the program as a process of its own, the way a user does.
#pragma once

#include <filesystem>
#include <string>

namespace korvex::test {

struct ProgramRun {
  int exitStatus = -1;  // of the process; 128 + signal where one killed it
  std::string out;      // bytes on standard output
  std::string err;      // bytes on standard error
};

// Runs the executable `program` in `folder`. `input` is all that its standard input holds.
ProgramRun RunProgram(const std::filesystem::path& program, const std::filesystem::path& folder,
                      const std::string& input = "");

}  // namespace korvex::test
