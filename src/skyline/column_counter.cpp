#include "skyline/column_counter.h"

namespace korvex {

namespace {

void CountColumn(ColumnCounter& counter) {
  if (counter.done == counter.columns) return;
  ++counter.done;
  if (!counter.progress) return;
  const auto percent = static_cast<int>(counter.done * 100 / counter.columns);
  const bool isReported = percent % 20 == 0 && percent > 0;
  if (isReported) counter.progress(percent);
}

}  // namespace

void CountColumns(const SkylineMatrix& K, std::int64_t first, std::int64_t end,
                  ColumnCounter& counter) {
  for (std::int64_t j = first; j < end; ++j) CountColumn(counter);
  if (counter.work != nullptr) AddWork(CountFactorUnits(K, first, end), *counter.work);
}

}  // namespace korvex
