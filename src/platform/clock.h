// The high-resolution performance counter that times the solution.
//
// seconds = (count at the end - count at the start) / frequency. Windows: the system's performance
// counter. POSIX: the monotonic clock, in nanoseconds.
#pragma once

#include <cstdint>

namespace korvex {

// Counts per second of `ReadPerformanceCounter`; fixed while the program runs.
std::int64_t ReadPerformanceFrequency();

// The present count; it never decreases.
std::int64_t ReadPerformanceCounter();

}  // namespace korvex
