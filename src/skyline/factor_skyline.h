// Factorisation and forward reduction in vector registers:
//   K = L D L^T,  L y = F.
//
// K is factorised in panels of 24 columns (panel/panel.h), from left to right. Every entry receives
// the same terms in the same order as in the plain routine (solve_skyline_plain.h), so factors and
// y are bit-identical for every vector length.
#pragma once

#include <vector>

#include "skyline/column_counter.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// Factorises K and reduces F, both in place.
// vectorBits: 128, 256 or 512, at most WidestVectorBits(); with 0, or where the program has no
// routine for this length, the plain routine does the work, on one thread.
//
// K: n columns with values; on return D on the diagonal and the factors l(i, j) above it.
// F: n; on return y.
// columns: counts the columns of K, on the caller's thread.
//
// threads: at most as many work, fewer where more would not help (panel_pipeline.h) or have no
// memory. The bits and the reports of `columns` do not depend on it.
//
// Throws a Stop where memory cannot hold the work space of one thread.
void FactorSkyline(int vectorBits, SkylineMatrix& K, std::vector<double>& F, ColumnCounter& columns,
                   int threads = 1);

// Factorises K alone.
void FactorSkyline(int vectorBits, SkylineMatrix& K, ColumnCounter& columns, int threads = 1);

}  // namespace korvex
