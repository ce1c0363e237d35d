#include "skyline/substitute_back.h"

#include <algorithm>

#include "platform/prefetch.h"
#include "report/check_memory.h"
#include "skyline/row_block.h"

namespace korvex {

namespace {

// The products l(i, j) u(j) of a block: [columns][BlockRows], from row end - 1 upward.
using Products = std::vector<double>;

void FormProducts(const RowBlock& block, Products& products) {
  // One column more than there are: SolveRow's pointer must lie in the table without columns, too.
  const std::size_t size = (block.columns.size() + 1) * static_cast<std::size_t>(BlockRows);
  if (products.capacity() < size) {
    AllocateOrStop("the products of a block of rows", 2 * size, sizeof(double),
                   [&] { products.reserve(2 * size); });
  }
  products.resize(size);
  double* product = products.data();
  for (const ReachingColumn& column : block.columns) {
    const std::int64_t count = std::min(BlockRows, block.end - column.top);
    const double u = *column.u;
    for (std::int64_t r = 0; r < count; ++r) product[r] = column.entry[r] * u;
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
                const RowBlock& block, const Products& products, std::int64_t i) {
  PrefetchColumn(K, i - 2 * BlockRows);
  double value = y[static_cast<std::size_t>(i)] / *Column(K, i);
  for (std::int64_t j = i + 1; j < block.end; ++j) {
    if (i >= TopRow(K, j)) value -= Column(K, j)[j - i] * u[static_cast<std::size_t>(j)];
  }
  const std::int64_t r = block.end - 1 - i;
  const double* const lastValue = K.Values.data() + K.SkylineSize - 1;
  const auto count = static_cast<std::int64_t>(block.columns.size());
  const double* product = products.data() + count * BlockRows + r;
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

void SubstituteBack(const SkylineMatrix& K, const std::vector<double>& y, std::vector<double>& u,
                    WorkShare* work) {
  RowBlock block;
  Products products;
  block.begin = block.end = static_cast<std::int64_t>(y.size());
  while (block.begin > 0) {
    MoveUp(K, u.data(), 1, block);
    FormProducts(block, products);
    for (std::int64_t i = block.end - 1; i >= block.begin; --i) {
      u[static_cast<std::size_t>(i)] = SolveRow(K, y, u, block, products, i);
    }
    if (work != nullptr) AddWork(CountEntryUnits(K, block.begin, block.end), *work);
  }
}

}  // namespace korvex
