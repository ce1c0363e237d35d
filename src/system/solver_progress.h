// The progress that a factorisation shows on the console.
#pragma once

#include <cstdint>

namespace korvex {

// Whether a solution reports its progress on the console.
enum class SolverProgress { Silent, Printed };

// The columns of a system, and how many are done, in one factorisation or several.
struct ColumnCounter {
  SolverProgress progress;
  std::int64_t columns = 0;
  std::int64_t done = 0;
};

// Counts one more column and prints the share of those done where it is a multiple of 20 percent.
// Many columns share a percentage; each print but the last steps back over itself, so that the next
// overwrites it. Columns beyond all are done again, and nothing more is said of them.
void CountColumn(ColumnCounter& counter);

}  // namespace korvex
