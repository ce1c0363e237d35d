// How many columns of a factorisation are done, and whom it tells.
#pragma once

#include <cstdint>
#include <functional>

namespace korvex {

// Hears the share of the columns that are done, in percent.
using ProgressCallback = std::function<void(int percent)>;

// The columns of a system, in one factorisation or several.
struct ColumnCounter {
  ProgressCallback progress;  // empty: nobody is told
  std::int64_t columns = 0;
  std::int64_t done = 0;
};

// Counts one more column and tells the share of those done, rounded down, where it is 20, 40, 60,
// 80 or 100. Many columns share a percentage: each of them tells it. Columns beyond all are done
// again, and nothing more is told of them.
void CountColumn(ColumnCounter& counter);

}  // namespace korvex
