// The solution of K u = F by factors K = L D L^T in skyline storage.
//
// The active-column method (Bathe 1996, sec. 8.2.3; Jennings 1966): only entries inside the profile
// are touched, everything happens in place. No pivot is tested: a singular K gives infinities or
// NaNs, silently.
#pragma once

#include <vector>

#include "skyline/column_counter.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// Solves K u = F.
// K: n columns with values; holds the factors afterwards: D on the diagonal, the unit upper factor
//    L^T above it. Where it falls into independent systems (independent_systems.h), its values are
//    used up.
// F: n; holds the forward-reduced vector y of L y = F afterwards.
// u: n, written completely.
// progress: hears of the factorisation's columns; may be empty.
// With n = 0 nothing is done and nothing told.
void SolveSkyline(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                  const ProgressCallback& progress);

}  // namespace korvex
