// u(i) = y(i) / d(i) - sum over j = i + 1 .. n - 1 ascending of A(i, j) u(j), from the last row
// upward.
//
// Each column is asked whether it reaches up to the row: going by columns instead would subtract in
// another order. A row of L^T lies scattered over the columns, but eight rows lie together in each.
// So the products of eight rows are formed column by column, for all columns behind them, and then
// subtracted row by row. What remains is the time of one subtraction after the other.
#include "system/substitute_back.h"

#include <algorithm>

#include "platform/prefetch.h"

namespace korvex {

namespace {

// Rows that are taken together: a cache line of each column.
constexpr std::int64_t BlockRows = 8;

// A column behind a block of rows that reaches the block.
struct ReachingColumn {
  std::int64_t top;
  const double* ahead;  // its last entry that the block above will read
};

// What a block of rows needs of the columns behind it.
struct RowBlock {
  std::int64_t begin = 0, end = 0;      // rows begin .. end - 1
  std::int64_t last = 0;                // no column behind this one reaches row end - 1
  std::vector<ReachingColumn> columns;  // ascending
  std::vector<double> products;  // A(i, j) u(j), BlockRows per column, from row end - 1 upward
};

const double* Diagonal(const SkylineMatrix& K, std::int64_t j) {
  return K.Values.data() + K.DiagonalAddress[static_cast<std::size_t>(j)];
}

// Lists the columns that reach the block and multiplies their entries. block.last comes from the
// block below: a column that does not reach a row reaches none above it.
void FormProducts(const SkylineMatrix& K, const std::vector<double>& u, RowBlock& block) {
  while (block.last >= block.end && TopRow(K, block.last) >= block.end) --block.last;
  block.columns.clear();
  block.products.resize(static_cast<std::size_t>((block.last + 1 - block.end) * BlockRows));
  const double* const lastValue = K.Values.data() + K.SkylineSize - 1;
  double* product = block.products.data();
  for (std::int64_t j = block.end; j <= block.last; ++j) {
    const std::int64_t top = TopRow(K, j);
    if (top >= block.end) continue;
    const double* entry = Diagonal(K, j) + (j - (block.end - 1));
    const double uj = u[static_cast<std::size_t>(j)];
    const std::int64_t count = std::min(BlockRows, block.end - top);
    for (std::int64_t r = 0; r < count; ++r) product[r] = entry[r] * uj;
    product += BlockRows;
    const std::ptrdiff_t toAhead = std::min<std::ptrdiff_t>(2 * BlockRows - 1, lastValue - entry);
    block.columns.push_back({top, entry + toAhead});
  }
}

// Asks for the entries of column j, if there is one, that its own block and the next will read.
void PrefetchColumn(const SkylineMatrix& K, std::int64_t j) {
  if (j < 0) return;
  const double* diagonal = Diagonal(K, j);
  Prefetch(diagonal);
  Prefetch(diagonal + std::min<std::int64_t>(BlockRows, j));
}

// Row i of the block, all rows below it done.
double SolveRow(const SkylineMatrix& K, const std::vector<double>& y, const std::vector<double>& u,
                const RowBlock& block, std::int64_t i) {
  PrefetchColumn(K, i - 2 * BlockRows);
  double value = y[static_cast<std::size_t>(i)] / *Diagonal(K, i);
  for (std::int64_t j = i + 1; j < block.end; ++j) {
    if (i >= TopRow(K, j)) value -= Diagonal(K, j)[j - i] * u[static_cast<std::size_t>(j)];
  }
  const std::int64_t r = block.end - 1 - i;
  const double* product = block.products.data() + r;
  const auto count = static_cast<std::int64_t>(block.columns.size());
  for (std::int64_t t = 0; t < count; ++t, product += BlockRows) {
    const ReachingColumn& column = block.columns[static_cast<std::size_t>(t)];
    // Each row asks for an eighth of what the next block will read.
    if (t % BlockRows == r) Prefetch(column.ahead);
    if (i >= column.top) value -= *product;
  }
  return value;
}

}  // namespace

void SubstituteBack(const SkylineMatrix& K, const std::vector<double>& y, std::vector<double>& u) {
  RowBlock block;
  block.end = static_cast<std::int64_t>(y.size());
  block.last = block.end - 1;
  while (block.end > 0) {
    block.begin = std::max<std::int64_t>(block.end - BlockRows, 0);
    FormProducts(K, u, block);
    for (std::int64_t i = block.end - 1; i >= block.begin; --i) {
      u[static_cast<std::size_t>(i)] = SolveRow(K, y, u, block, i);
    }
    block.end = block.begin;
  }
}

}  // namespace korvex
