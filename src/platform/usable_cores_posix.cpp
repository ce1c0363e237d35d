// The set of cores of this thread, which is that of the process unless it has set another one
// itself, and the processor time that its container may take. The C++ library counts all cores of
// the machine. Systems other than Linux keep no set.
#include <sched.h>

#include <algorithm>
#include <thread>

#include "platform/container_limit.h"
#include "platform/usable_cores.h"

namespace korvex {

namespace {

int CountBoundCores() {
#if defined(__linux__)
  cpu_set_t cores;
  // Fails where the machine has more cores than the set can name, 1024.
  if (sched_getaffinity(0, sizeof cores, &cores) == 0) return std::max(CPU_COUNT(&cores), 1);
#endif
  return static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
}

}  // namespace

int CountUsableCores() {
  return CountCoresWithin(CountBoundCores(),
                          ReadContainerCores("/proc/self/cgroup", "/sys/fs/cgroup"));
}

}  // namespace korvex
