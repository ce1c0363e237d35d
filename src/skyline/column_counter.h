// Progress of a factorisation: counts finished columns and reports 20, 40, 60, 80 and 100 percent.
//
//   percent = done * 100 / columns, rounded down
//
// Many columns share a percentage, and each of them reports it: the console's text depends on this.
// Beside it, the work may be counted finely (work_share.h).
#pragma once

#include <cstdint>
#include <functional>

#include "skyline/skyline_matrix.h"
#include "skyline/work_share.h"

namespace korvex {

// Receives the share of finished columns, in percent.
using ProgressCallback = std::function<void(int percent)>;

// The columns of one factorisation, or of several that share one progress report.
struct ColumnCounter {
  ProgressCallback progress;  // empty: no reports
  std::int64_t columns = 0;   // all columns
  std::int64_t done = 0;      // finished columns, never more than `columns`
  WorkShare* work = nullptr;  // counts the same work, and that of the substitution; null: nobody
};

// Counts the columns first .. end - 1 of K as finished. For each of them reports the percentage if
// it is 20, 40, 60, 80 or 100, but no more once all columns are counted: a system that is solved a
// second time, as one system after a solution by independent systems failed, counts some of its
// columns twice.
void CountColumns(const SkylineMatrix& K, std::int64_t first, std::int64_t end,
                  ColumnCounter& counter);

}  // namespace korvex
