#include "support/limited_child.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

namespace korvex::test {

namespace {

// Leaves the process this many bytes of addresses.
bool LimitAddresses(std::uint64_t bytes) {
  std::uint64_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  struct rlimit limit {};
  getrlimit(RLIMIT_AS, &limit);
  limit.rlim_cur = pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) + bytes;
  return pages > 0 && setrlimit(RLIMIT_AS, &limit) == 0;
}

}  // namespace

bool SucceedsWithin(std::uint64_t bytes, const std::function<void()>& work) {
  const pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    bool hasSucceeded = false;
    try {
      hasSucceeded = LimitAddresses(bytes);
      work();
    } catch (...) {
      hasSucceeded = false;
    }
    _exit(hasSucceeded ? 0 : 1);
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace korvex::test
