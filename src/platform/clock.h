// The high-resolution counter that times the solution.
#pragma once

#include <cstdint>

namespace korvex {

// Counts per second of `ReadPerformanceCounter`; fixed while the program runs.
std::int64_t ReadPerformanceFrequency();

// A monotonic count; differences divided by the frequency are seconds.
std::int64_t ReadPerformanceCounter();

}  // namespace korvex
