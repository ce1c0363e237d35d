// u(i) = y(i) / d(i) - sum over j = i + 1 .. n - 1 ascending of A(i, j) u(j), from the last row
// upward.
//
// A row of L^T lies scattered over the columns, but eight rows lie together in each. So the
// products of eight rows are formed column by column, for all columns behind them, and then
// subtracted row by row: going by columns instead would subtract in another order. What remains is
// the time of one subtraction after the other.
//
// A column that does not reach a row reaches none above it, so the columns that reach a block are
// among those that reach the block below, and its rows. Asking all columns behind each row would
// take time that grows with n^2, however few entries they have.
#include "skyline/substitute_back.h"

#include <algorithm>

#include "platform/prefetch.h"
#include "report/check_memory.h"

namespace korvex {

namespace {

// Rows that are taken together: a cache line of each column.
constexpr std::int64_t BlockRows = 8;

// A column behind a block of rows that reaches the block.
struct ReachingColumn {
  std::int64_t top;
  const double* entry;  // in the block's last row; those of the rows above follow
  double uj;
};

// What a block of rows needs of the columns behind it. Columns descend: those that join from block
// to block are the ones before all others.
struct RowBlock {
  std::int64_t begin = 0, end = 0;  // rows begin .. end - 1
  std::vector<ReachingColumn> columns;
  std::vector<double> products;  // A(i, j) u(j), BlockRows per column, from row end - 1 upward
};

// Keeps the columns that reach the block of those that reached the block below, and adds that
// block's rows.
void ListColumns(const SkylineMatrix& K, const std::vector<double>& u, RowBlock& block) {
  std::size_t kept = 0;
  for (const ReachingColumn& column : block.columns) {
    if (column.top >= block.end) continue;
    block.columns[kept++] = {column.top, column.entry + BlockRows, column.uj};
  }
  block.columns.resize(kept);
  if (block.columns.capacity() < kept + BlockRows) {
    const std::size_t size = 2 * (kept + BlockRows);
    AllocateOrStop("the columns of a block of rows", size, sizeof(ReachingColumn),
                   [&] { block.columns.reserve(size); });
  }
  const auto n = static_cast<std::int64_t>(u.size());
  for (std::int64_t j = std::min(block.end + BlockRows, n) - 1; j >= block.end; --j) {
    const std::int64_t top = TopRow(K, j);
    if (top >= block.end) continue;
    const double* entry = Column(K, j) + (j - (block.end - 1));
    block.columns.push_back({top, entry, u[static_cast<std::size_t>(j)]});
  }
}

void FormProducts(RowBlock& block) {
  // One row of products more than there are columns: a sum over none begins in the table, too.
  const std::size_t size = (block.columns.size() + 1) * static_cast<std::size_t>(BlockRows);
  if (block.products.capacity() < size) {
    AllocateOrStop("the products of a block of rows", 2 * size, sizeof(double),
                   [&] { block.products.reserve(2 * size); });
  }
  block.products.resize(size);
  double* product = block.products.data();
  for (const ReachingColumn& column : block.columns) {
    const std::int64_t count = std::min(BlockRows, block.end - column.top);
    for (std::int64_t r = 0; r < count; ++r) product[r] = column.entry[r] * column.uj;
    product += BlockRows;
  }
}

// Asks for the entries of column j, if there is one, that its own block and the next will read.
void PrefetchColumn(const SkylineMatrix& K, std::int64_t j) {
  if (j < 0) return;
  const double* diagonal = Column(K, j);
  Prefetch(diagonal);
  Prefetch(diagonal + std::min<std::int64_t>(BlockRows, j));
}

// Row i of the block, all rows below it done.
double SolveRow(const SkylineMatrix& K, const std::vector<double>& y, const std::vector<double>& u,
                const RowBlock& block, std::int64_t i) {
  PrefetchColumn(K, i - 2 * BlockRows);
  double value = y[static_cast<std::size_t>(i)] / *Column(K, i);
  for (std::int64_t j = i + 1; j < block.end; ++j) {
    if (i >= TopRow(K, j)) value -= Column(K, j)[j - i] * u[static_cast<std::size_t>(j)];
  }
  const std::int64_t r = block.end - 1 - i;
  const double* const lastValue = K.Values.data() + K.SkylineSize - 1;
  const auto count = static_cast<std::int64_t>(block.columns.size());
  const double* product = block.products.data() + count * BlockRows + r;
  for (std::int64_t t = count - 1; t >= 0; --t) {
    product -= BlockRows;
    const ReachingColumn& column = block.columns[static_cast<std::size_t>(t)];
    // Each row asks for an eighth of what the next block will read.
    if (t % BlockRows == r) {
      Prefetch(column.entry +
               std::min<std::ptrdiff_t>(2 * BlockRows - 1, lastValue - column.entry));
    }
    if (i >= column.top) value -= *product;
  }
  return value;
}

}  // namespace

void SubstituteBack(const SkylineMatrix& K, const std::vector<double>& y, std::vector<double>& u) {
  RowBlock block;
  block.end = static_cast<std::int64_t>(y.size());
  while (block.end > 0) {
    block.begin = std::max<std::int64_t>(block.end - BlockRows, 0);
    ListColumns(K, u, block);
    FormProducts(block);
    for (std::int64_t i = block.end - 1; i >= block.begin; --i) {
      u[static_cast<std::size_t>(i)] = SolveRow(K, y, u, block, i);
    }
    block.end = block.begin;
  }
}

}  // namespace korvex
