// Runs the program as a process of its own, the way a user does.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace korvex::test {

struct ProgramRun {
  int exitStatus = -1;  // of the process; 128 + signal where one killed it
  std::string out;      // bytes on standard output
  std::string err;      // bytes on standard error
};

// Runs the executable `program` in `folder`. `input` is all that its standard input holds.
ProgramRun RunProgram(const std::filesystem::path& program, const std::filesystem::path& folder,
                      const std::string& input = "");

// "计算日志.txt" in GBK and in UTF-8.
inline constexpr const char* LogName = "\xBC\xC6\xCB\xE3\xC8\xD5\xD6\xBE.txt";
inline constexpr const char* LogLink = "\xE8\xAE\xA1\xE7\xAE\x97\xE6\x97\xA5\xE5\xBF\x97.txt";

std::vector<std::string> Sorted(std::vector<std::string> names);

// The names in a folder, sorted.
std::vector<std::string> ListFolder(const std::filesystem::path& folder);

// `text` with the one figure that differs from run to run, the solution time, as "#". It consists
// of `digits`.
std::string MaskTime(const std::string& text, const char* digits = ".0123456789");

}  // namespace korvex::test
