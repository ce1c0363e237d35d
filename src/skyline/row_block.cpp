#include "skyline/row_block.h"

#include <algorithm>

#include "report/check_memory.h"

namespace korvex {

void MoveUp(const SkylineMatrix& K, const double* u, std::int64_t step, RowBlock& block) {
  const std::int64_t oldEnd = block.end;
  block.end = block.begin;
  block.begin = std::max<std::int64_t>(block.end - BlockRows, 0);
  std::size_t kept = 0;
  for (const ReachingColumn& column : block.columns) {
    if (column.top >= block.end) continue;
    block.columns[kept++] = {column.top, column.entry + BlockRows, column.u};
  }
  block.columns.resize(kept);
  if (block.columns.capacity() < kept + BlockRows) {
    const std::size_t size = 2 * (kept + BlockRows);
    AllocateOrStop("the columns of a block of rows", size, sizeof(ReachingColumn),
                   [&] { block.columns.reserve(size); });
  }
  for (std::int64_t j = oldEnd - 1; j >= block.end; --j) {
    const std::int64_t top = TopRow(K, j);
    if (top >= block.end) continue;
    const double* entry = Column(K, j) + (j - (block.end - 1));
    block.columns.push_back({top, entry, u + j * step});
  }
}

}  // namespace korvex
