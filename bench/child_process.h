// A program that runs as a process of its own, and what it took. POSIX systems.
#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

namespace korvex::bench {

struct ProcessUse {
  bool isFine = false;  // it has ended by itself with status 0
  int status = 0;       // of its exit; -1: it was ended
  double clock = 0.0;   // seconds
  double processor = 0.0;
  double bytes = 0.0;  // the most memory that it had at a time
};

// words: the program, looked for in PATH where it has no slash, and its arguments. What it says
// goes to `output`, a file.
inline ProcessUse RunProcess(std::vector<std::string> words, const std::string& output) {
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  ProcessUse use;
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    constexpr int Mode = 0666, NotStarted = 127;
    const int out = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, Mode);
    dup2(out, STDOUT_FILENO);
    dup2(out, STDERR_FILENO);
    execvp(arguments.front(), arguments.data());
    _exit(NotStarted);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) < 0) return use;
  use.clock = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  use.processor = seconds(usage.ru_utime) + seconds(usage.ru_stime);
  use.bytes = 1024.0 * static_cast<double>(usage.ru_maxrss);  // Linux: kilobytes
  use.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  use.isFine = use.status == 0;
  return use;
}

}  // namespace korvex::bench
