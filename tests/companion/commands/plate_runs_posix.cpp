#include "commands/plate_runs_posix.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>
#include <vector>

#include "commands/terminal.h"
#include "support/good_models.h"
#include "support/words.h"

namespace kvx::test {

std::string PlateText(int n) {
  korvex::test::ModelText text;
  text.materials = {{210000.0, 0.3, 7.85e-9}};
  text.thicknesses = {10.0};
  text.tSections = {{200.0, 10.0, 100.0, 10.0}};
  const auto node = [&](int i, int j) { return i * (n + 1) + j; };
  for (int i = 0; i <= n; ++i) {
    for (int j = 0; j <= n; ++j) text.nodes.push_back({100.0 * i, 100.0 * j, 0.0});
    text.restraints.push_back({node(0, i)});
  }
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      text.shells4.push_back(
          {{node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)}, 0, 0});
      text.shell4Loads.push_back({i * n + j, {0.0, 0.0, -0.001}});
    }
    text.beams.push_back({node(i, n / 2), node(i + 1, n / 2)});
  }
  return korvex::test::WriteModel(text);
}

pid_t StartKvx(const std::filesystem::path& folder, const std::filesystem::path& output,
               const std::string& command) {
  const std::string path = output.string();
  const pid_t child = fork();
  if (child != 0) return child;
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  dup2(file, STDOUT_FILENO);
  dup2(file, STDERR_FILENO);
  for (const int each : ListEndSignals()) std::signal(each, SIG_DFL);  // as at a terminal
  std::vector<std::string> words = SplitWords(KVX_PROGRAM " " + command);
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  if (chdir(folder.c_str()) == 0) execv(KVX_PROGRAM, arguments.data());
  _exit(127);
}

int AwaitKvx(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void Sleep(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }

}  // namespace kvx::test
