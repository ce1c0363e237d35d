// See solver_progress.h.
#include "system/solver_progress.h"

#include "platform/console.h"

namespace korvex {

void CountColumn(ColumnCounter& counter) {
  if (counter.done == counter.columns) return;
  ++counter.done;
  if (counter.progress == SolverProgress::Silent) return;
  const auto p = static_cast<int>(counter.done * 100 / counter.columns);
  if (p == 20 || p == 40 || p == 60 || p == 80) {
    PrintFormatted("%2d%%Completed.\b\b\b\b\b\b\b\b\b\b\b\b\b", p);
  } else if (p == 100) {
    PrintFormatted("%2d%%Completed.", p);
  }
}

}  // namespace korvex
