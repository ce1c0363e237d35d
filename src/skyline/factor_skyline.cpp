// NaNs with other bits than 0/0 (other_nan.h) are rare and get the plain routine:
//   in F: the panels factorise K alone, and the plain forward reduction gives y;
//   in K: the plain routine takes over at the first panel that has one.
#include "skyline/factor_skyline.h"

#include <algorithm>

#include "report/check_memory.h"
#include "skyline/other_nan.h"
#include "skyline/panel/panel_routine.h"
#include "skyline/panel_pipeline.h"
#include "skyline/panel_work.h"
#include "skyline/solve_skyline_plain.h"

namespace korvex {

namespace {

// As FactorPanelsOnThreads (panel_pipeline.h), on the caller's thread alone.
std::int64_t FactorPanels(const PanelRoutines& routines, SkylineMatrix& K, std::vector<double>& F,
                          ColumnCounter& columns) {
  const std::int64_t n = CountColumns(K);
  PanelWork work;
  AllocatePanelWork(K, 1, MaxPanelRows, work);
  const SkylineArrays arrays = ArraysOf(K, F);
  for (std::int64_t first = 0; first < n; first += PanelColumns) {
    const std::int64_t end = std::min(first + PanelColumns, n);
    if (HasOtherNaN(K, first, end, routines.sum)) return first;
    Panel panel;
    routines.begin(arrays, first, MemoryOf(work, 0, first, 1), panel);
    routines.reduce(arrays, first, panel);
    routines.finish(arrays, panel);
    CountColumns(K, first, end, columns);
  }
  return n;
}

}  // namespace

void FactorSkyline(int vectorBits, SkylineMatrix& K, std::vector<double>& F, ColumnCounter& columns,
                   int threads) {
  const PanelRoutines routines = FindPanelRoutines(vectorBits);
  if (routines.begin == nullptr) {
    FactorSkylinePlain(K, F, columns);
  } else if (HasOtherNaN(F)) {
    FactorSkyline(vectorBits, K, columns, threads);
    ReduceLoadPlain(K, 0, F);
  } else {
    const int useful = CountUsefulThreads(K, threads);
    const std::int64_t first = useful > 1 ? FactorPanelsOnThreads(routines, K, F, useful, columns)
                                          : FactorPanels(routines, K, F, columns);
    FactorColumnsPlain(K, first, columns);
    ReduceLoadPlain(K, first, F);
  }
}

void FactorSkyline(int vectorBits, SkylineMatrix& K, ColumnCounter& columns, int threads) {
  std::vector<double> noLoad;
  AllocateItems("the load of the factorisation", K.ColumnHeights.size(), noLoad);
  FactorSkyline(vectorBits, K, noLoad, columns, threads);
}

}  // namespace korvex
