// Runs the program as a separate process, as a user does.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace korvex::test {

struct ProgramRun {
  int exitStatus = -1;               // of the process; POSIX: 128 + signal where one killed it
  std::string out;                   // standard output
  std::string err;                   // standard error; POSIX: the notices are there
  std::vector<std::string> notices;  // as in notices.h; the rest of err comes last
};

// Runs the executable `program` in `folder`, with `input` as its whole standard input. Message
// boxes are answered as soon as they appear. arguments: UTF-8, without quotes.
ProgramRun RunProgram(const std::filesystem::path& program, const std::filesystem::path& folder,
                      const std::string& input = "",
                      const std::vector<std::string>& arguments = {});

// The calculation log in the program's folder.
std::filesystem::path LogPath();

// The names that the log has there, as ListFolder gives them.
std::vector<std::string> LogNames();

std::vector<std::string> Sorted(std::vector<std::string> names);

// The names and those of the log, sorted.
std::vector<std::string> WithLog(std::vector<std::string> names);

// The names in a folder, sorted: bytes on POSIX, UTF-8 on Windows.
std::vector<std::string> ListFolder(const std::filesystem::path& folder);

// `text` with the one figure that differs from run to run, the solution time, as "#". It consists
// of `digits`.
std::string MaskTime(const std::string& text, const char* digits = ".0123456789");

}  // namespace korvex::test
