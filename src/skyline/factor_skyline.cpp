// Signs of NaNs: x86 returns the bits of an operand that is a NaN, and of the first operand if both
// are; 0/0 and the like give one fixed NaN, which has the sign bit set. Compilers may exchange the
// operands of a product, so the bits of a product of two different NaNs depend on the compiler and
// on the vector length. While all NaNs have the bits of the fixed one, no order matters. Other NaNs
// come from the model file or from a negation. They are rare and get the plain routine:
//   in F: the panels factorise K alone, and the plain forward reduction gives y;
//   in K: the plain routine takes over at the first panel that has one.
#include "skyline/factor_skyline.h"

#include <algorithm>
#include <cmath>
#include <cstring>
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

// Whether a value is a NaN with other bits than the one that x86 gives 0/0.
bool HasOtherNaN(const double* values, std::int64_t count) {
  constexpr std::uint64_t FixedNaN = 0xFFF8000000000000U;
  return std::any_of(values, values + count, [](double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return std::isnan(value) && bits != FixedNaN;
  });
}

// The same for the columns first .. end - 1 of K. Their values are contiguous.
bool HasOtherNaN(const SkylineMatrix& K, std::int64_t first, std::int64_t end, SumRoutine sum) {
  const double* values = Column(K, first);
  const std::int64_t count =
      Column(K, end - 1) + K.ColumnHeights[static_cast<std::size_t>(end - 1)] - values;
  return std::isnan(sum(values, count)) && HasOtherNaN(values, count);
}

void FactorPanels(const PanelRoutines& routines, SkylineMatrix& K, std::vector<double>& F,
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
    const std::int64_t end = std::min(first + PanelColumns, n);
    if (HasOtherNaN(K, first, end, routines.sum)) {
      FactorColumnsPlain(K, first, columns);
      ReduceLoadPlain(K, first, F);
      return;
    }
    routines.factor(arrays, first, static_cast<double*>(start), sliceRows);
    CountColumns(K, first, end, columns);
  }
}

}  // namespace

void FactorSkyline(int vectorBits, SkylineMatrix& K, std::vector<double>& F,
                   ColumnCounter& columns) {
  const PanelRoutines routines = FindPanelRoutines(vectorBits);
  if (routines.factor == nullptr) {
    FactorSkylinePlain(K, F, columns);
  } else if (HasOtherNaN(F.data(), static_cast<std::int64_t>(F.size()))) {
    FactorSkyline(vectorBits, K, columns);
    ReduceLoadPlain(K, 0, F);
  } else {
    FactorPanels(routines, K, F, columns);
  }
}

void FactorSkyline(int vectorBits, SkylineMatrix& K, ColumnCounter& columns) {
  std::vector<double> noLoad;
  AllocateItems("the load of the factorisation", K.ColumnHeights.size(), noLoad);
  FactorSkyline(vectorBits, K, noLoad, columns);
}

}  // namespace korvex
