// A column that does not reach a row reaches no row above it. So the columns that reach a block are
// among those that reach the block below, together with that block's own columns. Only these are
// tested: a test of all later columns for each row takes time proportional to n^2.
#include "skyline/substitute_back.h"

#include <algorithm>

#include "platform/prefetch.h"
#include "report/check_memory.h"

namespace korvex {

namespace {

// Rows of a block: in each column, the entries of one cache line.
constexpr std::int64_t BlockRows = 8;

// A column to the right of a block of rows that reaches the block.
struct ReachingColumn {
  std::int64_t top;     // top row
  const double* entry;  // of the block's last row; the rows above follow
  double uj;            // u(j)
};

// A block of rows and the columns that reach it. Column numbers descend, so that the columns of the
// next block, all lower, are appended.
struct RowBlock {
  std::int64_t begin = 0, end = 0;  // rows begin .. end - 1
  std::vector<ReachingColumn> columns;
  std::vector<double> products;  // l(i, j) u(j): [columns][BlockRows], from row end - 1 upward
};

// Removes the columns that do not reach the block and appends those of the block below.
void UpdateColumns(const SkylineMatrix& K, const std::vector<double>& u, RowBlock& block) {
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
  // One column more than there are: SolveRow's pointer must lie in the table without columns, too.
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

// Prefetches the entries of column j that its own block and the block above will read. j < 0: none.
void PrefetchColumn(const SkylineMatrix& K, std::int64_t j) {
  if (j < 0) return;
  const double* diagonal = Column(K, j);
  Prefetch(diagonal);
  Prefetch(diagonal + std::min<std::int64_t>(BlockRows, j));
}

// Returns u(i) of row i of the block. All u below row i are known.
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
    // Each row prefetches an eighth of what the next block will read.
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
    UpdateColumns(K, u, block);
    FormProducts(block);
    for (std::int64_t i = block.end - 1; i >= block.begin; --i) {
      u[static_cast<std::size_t>(i)] = SolveRow(K, y, u, block, i);
    }
    block.end = block.begin;
  }
}

}  // namespace korvex
