#include <chrono>
#include <cstdint>

#include "platform/clock.h"

namespace korvex {

std::int64_t ReadPerformanceFrequency() { return 1000000000; }

std::int64_t ReadPerformanceCounter() {
  const auto sinceEpoch = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::nanoseconds>(sinceEpoch).count();
}

}  // namespace korvex
