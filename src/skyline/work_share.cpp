#include "skyline/work_share.h"

#include <algorithm>

namespace korvex {

void AddWork(double units, WorkShare& work) {
  const double part = units < work.rest ? units / work.rest : 1.0;
  work.share += (1.0 - work.share) * part;
  work.rest = std::max(work.rest - units, 0.0);
  if (work.report) work.report(work.share);
}

double CountFactorUnits(const SkylineMatrix& K, std::int64_t first, std::int64_t end) {
  double units = 0.0;
  for (std::int64_t j = first; j < end; ++j) {
    const auto height = static_cast<double>(K.ColumnHeights[static_cast<std::size_t>(j)]);
    units += height * height;
  }
  return units;
}

double CountEntryUnits(const SkylineMatrix& K, std::int64_t first, std::int64_t end) {
  std::int64_t entries = 0;
  for (std::int64_t j = first; j < end; ++j) {
    entries += K.ColumnHeights[static_cast<std::size_t>(j)];
  }
  return UnitsPerEntry * static_cast<double>(entries);
}

}  // namespace korvex
