// The set of cores of this thread, which is that of the process unless it has set another one
// itself. The C++ library counts all cores of the machine. Systems other than Linux keep no set.
#include <sched.h>

#include <algorithm>
#include <thread>

#include "platform/usable_cores.h"

namespace korvex {

int CountUsableCores() {
#if defined(__linux__)
  cpu_set_t cores;
  // Fails where the machine has more cores than the set can name, 1024.
  if (sched_getaffinity(0, sizeof cores, &cores) == 0) return std::max(CPU_COUNT(&cores), 1);
#endif
  return static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
}

}  // namespace korvex
