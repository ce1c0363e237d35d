// The process of run_program.h, started through the shell with files for its three streams.
#include "support/run_program.h"

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>

#include "support/temp_folder.h"

namespace korvex::test {

ProgramRun RunProgram(const std::filesystem::path& program, const std::filesystem::path& folder,
                      const std::string& input) {
  const TempFolder streams;
  const std::string base = streams.Path().string();
  WriteFile(base + "/in", input);
  const std::string command = "cd '" + folder.string() + "' && '" + program.string() + "' <'" +
                              base + "/in' >'" + base + "/out' 2>'" + base + "/err'";
  const int status = std::system(command.c_str());  // NOLINT(cert-env33-c): the paths are ours
  ProgramRun run;
  run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  run.out = ReadFile(base + "/out");
  run.err = ReadFile(base + "/err");
  return run;
}

std::vector<std::string> Sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> ListFolder(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  return Sorted(names);
}

std::string MaskTime(const std::string& text, const char* digits) {
  const std::string before = "Solution time:";
  const std::size_t begin = text.find(before) + before.size();
  const std::size_t end = text.find_first_not_of(digits, begin);
  if (text.find(before) == std::string::npos || end == begin) return text;
  return text.substr(0, begin) + "#" + text.substr(end);
}

}  // namespace korvex::test
