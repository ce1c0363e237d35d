// Back substitution with the factors of a skyline matrix, row by row.
#pragma once

#include <vector>

#include "skyline/skyline_matrix.h"

namespace korvex {

// Solves D L^T u = y.
// K: the factors as SolveSkyline leaves them.
// y: n, the reduced load.
// u: n, written completely.
void SubstituteBack(const SkylineMatrix& K, const std::vector<double>& y, std::vector<double>& u);

}  // namespace korvex
