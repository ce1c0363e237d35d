// The plain solution of K u = F: the active-column method as it is written in books (Bathe 1996,
// sec. 8.2.3), entry by entry.
//
// The yardstick of SolveSkyline (solve_skyline.h), which gives the same bits sooner, and the
// factorisation that it falls back on where there are no vectors.
#pragma once

#include <vector>

#include "skyline/column_counter.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// K = L D L^T and y of L y = F, in place of K and F as SolveSkyline leaves them. columns: counts
// those of K on.
void FactorSkylinePlain(SkylineMatrix& K, std::vector<double>& F, ColumnCounter& columns);

// Solves D L^T u = y. K: the factors. y, u: n; u is written completely.
void SubstituteBackPlain(const SkylineMatrix& K, const std::vector<double>& y,
                         std::vector<double>& u);

// Both. Arguments as SolveSkyline has them.
void SolveSkylinePlain(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                       const ProgressCallback& progress);

}  // namespace korvex
