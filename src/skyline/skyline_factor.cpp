// The column is kept upside down: an entry of the factor and the number that it meets then both lie
// at ascending addresses, which compilers turn into vectors.
#include "skyline/skyline_factor.h"

#include <algorithm>

#include "platform/prefetch.h"
#include "report/check_memory.h"

namespace korvex {

namespace {

// Columns of the factor between two reports.
constexpr std::int64_t ReportedColumns = 512;

// Sums that run side by side.
constexpr std::int64_t Sums = 8;

// The sum of a(k) b(k), k = 0 .. count - 1.
double SumProducts(const double* a, const double* b, std::int64_t count) {
  double sums[Sums] = {};
  std::int64_t k = 0;
  for (; k + Sums <= count; k += Sums) {
    for (std::int64_t s = 0; s < Sums; ++s) sums[s] += a[k + s] * b[k + s];
  }
  double sum = 0.0;
  for (; k < count; ++k) sum += a[k] * b[k];
  for (const double part : sums) sum += part;
  return sum;
}

// b(k) -= factor a(k), k = 0 .. count - 1; a and b do not overlap.
void SubtractMultiple(double factor, const double* a, std::int64_t count, double* b) {
  for (std::int64_t k = 0; k < count; ++k) b[k] -= factor * a[k];
}

// A column upside down: number i stands at n - 1 - i.
struct TurnedColumn {
  std::int64_t n = 0;
  std::vector<double> numbers;
};

double& NumberAt(TurnedColumn& column, std::int64_t i) {
  return column.numbers[static_cast<std::size_t>(column.n - 1 - i)];
}

std::int64_t EquationOf(const SkylineFactor& factor, std::int64_t column) {
  return factor.equations.empty() ? column : factor.equations[static_cast<std::size_t>(column)];
}

void Report(const SkylineMatrix& K, std::int64_t j, WorkShare* work) {
  if (work == nullptr || j % ReportedColumns != 0) return;
  AddWork(CountEntryUnits(K, j, std::min(j + ReportedColumns, CountColumns(K))), *work);
}

// The first number that is not 0, or n.
std::int64_t FindFirst(TurnedColumn& x) {
  std::int64_t i = 0;
  while (i < x.n && NumberAt(x, i) == 0.0) ++i;
  return i;
}

// L y = F, and the division by D. The pivots lie far apart: they are kept when their columns are
// read. Zeros before the first number stay zeros: columns there are not read.
void Reduce(const SkylineMatrix& K, TurnedColumn& x, WorkShare* work) {
  std::vector<double> pivots;
  AllocateItems("the pivots of the factor", K.ColumnHeights.size(), pivots);
  const std::int64_t first = FindFirst(x);
  for (std::int64_t j = first; j < x.n; ++j) {
    Report(K, j, work);
    const double* const entries = Column(K, j);
    double& number = NumberAt(x, j);
    pivots[static_cast<std::size_t>(j)] = entries[0];
    number -= SumProducts(entries + 1, &number + 1, j - std::max(TopRow(K, j), first));
  }
  for (std::int64_t j = first; j < x.n; ++j) NumberAt(x, j) /= pivots[static_cast<std::size_t>(j)];
}

// The processor foresees columns in ascending order alone.
void PrefetchColumn(const SkylineMatrix& K, std::int64_t j) {
  constexpr std::int64_t CacheLine = 64 / sizeof(double);
  if (j < 0) return;
  const double* const entries = Column(K, j);
  const std::int64_t height = K.ColumnHeights[static_cast<std::size_t>(j)];
  for (std::int64_t k = 0; k < height; k += CacheLine) Prefetch(entries + k);
}

// L^T u = y. Zeros, as of a system that F leaves alone, cost nothing.
void Substitute(const SkylineMatrix& K, TurnedColumn& x, WorkShare* work) {
  constexpr std::int64_t Ahead = 3;
  for (std::int64_t j = x.n - 1; j >= 0; --j) {
    Report(K, j, work);
    double& number = NumberAt(x, j);
    if (number == 0.0) continue;
    PrefetchColumn(K, j - Ahead);
    SubtractMultiple(number, Column(K, j) + 1, j - TopRow(K, j), &number + 1);
  }
}

}  // namespace

void SolveFactored(const SkylineFactor& factor, std::vector<double>& x, WorkShare* work) {
  const SkylineMatrix& K = factor.columns;
  TurnedColumn turned{CountColumns(K), {}};
  AllocateItems("a column beside the factor", x.size(), turned.numbers);
  for (std::int64_t j = 0; j < turned.n; ++j) {
    NumberAt(turned, j) = x[static_cast<std::size_t>(EquationOf(factor, j))];
  }
  Reduce(K, turned, work);
  Substitute(K, turned, work);
  for (std::int64_t j = 0; j < turned.n; ++j) {
    x[static_cast<std::size_t>(EquationOf(factor, j))] = NumberAt(turned, j);
  }
}

}  // namespace korvex
