// The blocks of rows of the back substitution, and the columns that reach them.
//
// A column that does not reach a row reaches no row above it. So the columns that reach a block are
// among those that reach the block below, together with that block's own columns. Only these are
// tested: a test of all later columns for each row takes time proportional to n^2.
#pragma once

#include <cstdint>
#include <vector>

#include "skyline/panel/lanes.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// A block of rows and the columns that reach it. Column numbers descend, so that the columns of the
// next block, all lower, are appended.
struct RowBlock {
  std::int64_t begin = 0, end = 0;  // rows begin .. end - 1
  std::vector<ReachingColumn> columns;
};

// Makes `block`, which was the block below, the block of the rows above, BlockRows or what is left.
// For the first block, the lowest one: begin = n, no columns.
// u: of row 0; `step` doubles for each row.
// Throws a Stop where memory cannot hold the columns.
void MoveUp(const SkylineMatrix& K, const double* u, std::int64_t step, RowBlock& block);

}  // namespace korvex
