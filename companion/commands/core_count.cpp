#include "commands/core_count.h"

#include <algorithm>
#include <thread>

namespace kvx {

int CountCores() {
  const unsigned cores = std::thread::hardware_concurrency();
  return static_cast<int>(std::clamp<unsigned>(cores, 1, MostThreads));
}

}  // namespace kvx
