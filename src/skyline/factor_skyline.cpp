#include "skyline/factor_skyline.h"

#include <algorithm>
#include <memory>

#include "report/check_memory.h"
#include "skyline/panel/panel_routine.h"
#include "skyline/solve_skyline_plain.h"

namespace korvex {

namespace {

// Bytes. The work space begins at a multiple of it: a vector that crosses the boundary of two cache
// lines takes twice the time to load.
constexpr std::size_t WorkAlignment = 64;

// Rows of the slices: those of the tallest panel above its diagonal block, at most MaxSliceRows.
std::int64_t CountSliceRows(const SkylineMatrix& K, std::int64_t n) {
  std::int64_t rows = 0;
  for (std::int64_t j = 0; j < n; ++j) {
    rows = std::max(rows, j / PanelColumns * PanelColumns - TopRow(K, j) / TileRows * TileRows);
  }
  return std::min(rows, MaxSliceRows);
}

void FactorPanels(PanelRoutine factorPanel, SkylineMatrix& K, std::vector<double>& F,
                  ColumnCounter& columns) {
  const std::int64_t n = CountColumns(K);
  const std::int64_t sliceRows = CountSliceRows(K, n);
  std::vector<double> work;
  AllocateItems("the work space of the factorisation",
                static_cast<std::size_t>(sliceRows * PanelColumns) + WorkAlignment / sizeof(double),
                work);
  void* start = work.data();
  std::size_t space = work.size() * sizeof(double);
  std::align(WorkAlignment, sizeof(double), start, space);

  const SkylineArrays arrays = {n, K.ColumnHeights.data(), K.DiagonalAddress.data(),
                                K.Values.data(), F.data()};
  for (std::int64_t first = 0; first < n; first += PanelColumns) {
    factorPanel(arrays, first, static_cast<double*>(start), sliceRows);
    for (std::int64_t j = first; j < std::min(first + PanelColumns, n); ++j) CountColumn(columns);
  }
}

}  // namespace

void FactorSkyline(int vectorBits, SkylineMatrix& K, std::vector<double>& F,
                   ColumnCounter& columns) {
  const PanelRoutine factorPanel = FindPanelRoutine(vectorBits);
  if (factorPanel == nullptr) {
    FactorSkylinePlain(K, F, columns);
  } else {
    FactorPanels(factorPanel, K, F, columns);
  }
}

}  // namespace korvex
