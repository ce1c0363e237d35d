// Factorisation and forward reduction in vectors: panels of columns (skyline_panel.h), one after
// another.
#pragma once

#include <vector>

#include "skyline/column_counter.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// K = L D L^T and y of L y = F, in place of K and F as SolveSkyline leaves them.
// vectorBits: 128, 256 or 512, no more than the processor has (WidestVectorBits); with 0, or where
//    the program has no such vectors, the plain routine does the work. All give the same bits.
// columns: counts those of K on.
void FactorSkyline(int vectorBits, SkylineMatrix& K, std::vector<double>& F,
                   ColumnCounter& columns);

}  // namespace korvex
