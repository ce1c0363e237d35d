// Back substitution with the factors of a skyline matrix:
//   u(i) = y(i) / d(i) - sum l(i, j) u(j),  j = i + 1 .. n - 1 ascending, where column j reaches
//   row i
//
// Rows are done in blocks of eight, from the last row up. The eight entries of a block in one
// column lie side by side, so the products l(i, j) u(j) of a block are formed column by column,
// with whole cache lines. Then they are subtracted row by row, in the order of the plain routine.
#pragma once

#include <vector>

#include "skyline/skyline_matrix.h"
#include "skyline/work_share.h"

namespace korvex {

// Solves D L^T u = y.
// K: the factors as FactorSkyline leaves them.
// y: n, the reduced load.
// u: n, written completely.
// work: counts the work; null: nobody does.
// Throws a Stop where memory cannot hold the products of a block.
void SubstituteBack(const SkylineMatrix& K, const std::vector<double>& y, std::vector<double>& u,
                    WorkShare* work = nullptr);

}  // namespace korvex
