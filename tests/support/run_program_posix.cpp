// Starts the program through the shell, with files for its three standard streams.
#include <sys/wait.h>

#include <cstdlib>

#include "support/notices_posix.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::test {

ProgramRun RunProgram(const std::filesystem::path& program, const std::filesystem::path& folder,
                      const std::string& input, const std::vector<std::string>& arguments) {
  const TempFolder streams;
  const std::string base = streams.Path().string();
  WriteFile(base + "/in", input);
  std::string command = "cd '" + folder.string() + "' && '" + program.string() + "'";
  for (const std::string& argument : arguments) command += " '" + argument + "'";
  command += " <'" + base + "/in' >'" + base + "/out' 2>'" + base + "/err'";
  const int status = std::system(command.c_str());  // NOLINT(cert-env33-c): the paths are ours
  ProgramRun run;
  run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  run.out = ReadFile(base + "/out");
  run.err = ReadFile(base + "/err");
  run.notices = SplitNotices(run.err);
  return run;
}

// "计算日志.txt" in GBK, the file, and in UTF-8, the link.
std::filesystem::path LogPath() { return "\xBC\xC6\xCB\xE3\xC8\xD5\xD6\xBE.txt"; }

std::vector<std::string> LogNames() {
  return {LogPath().string(), "\xE8\xAE\xA1\xE7\xAE\x97\xE6\x97\xA5\xE5\xBF\x97.txt"};
}

}  // namespace korvex::test
