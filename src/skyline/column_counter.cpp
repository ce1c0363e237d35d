#include "skyline/column_counter.h"

namespace korvex {

void CountColumn(ColumnCounter& counter) {
  if (counter.done == counter.columns) return;
  ++counter.done;
  if (!counter.progress) return;
  const auto percent = static_cast<int>(counter.done * 100 / counter.columns);
  const bool isReported = percent % 20 == 0 && percent > 0;
  if (isReported) counter.progress(percent);
}

}  // namespace korvex
