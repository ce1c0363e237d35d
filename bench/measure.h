// Processor times and medians.
//
// A processor's time leaves out what other programs of a shared machine take; where a routine has
// threads it is the sum over them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <functional>
#include <vector>

namespace korvex::bench {

// Seconds of processor time that the work takes.
inline double Measure(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// The middle one of the values, or the mean of the two in the middle. values: one at least.
inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t n = values.size();
  return 0.5 * (values[(n - 1) / 2] + values[n / 2]);
}

}  // namespace korvex::bench
