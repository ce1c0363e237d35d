// The process of run_program.h, started through the shell with files for its three streams.
#include "support/run_program.h"

#include <sys/wait.h>

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

}  // namespace korvex::test
