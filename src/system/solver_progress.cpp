// See solver_progress.h.
#include "system/solver_progress.h"

#include "platform/console.h"

namespace korvex {

void PrintProgress(std::int64_t j, std::int64_t n) {
  const auto p = static_cast<int>((j * 100 + 100) / n);
  if (p == 20 || p == 40 || p == 60 || p == 80) {
    PrintFormatted("%2d%%Completed.\b\b\b\b\b\b\b\b\b\b\b\b\b", p);
  } else if (p == 100) {
    PrintFormatted("%2d%%Completed.", p);
  }
}

}  // namespace korvex
