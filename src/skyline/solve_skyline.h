// The solution of K u = F by the active-column method (Bathe 1996, sec. 8.2.3; Jennings 1966):
//   K = L D L^T   factorisation, in place, within the profile
//   L y = F       forward reduction, in place
//   D L^T u = y   back substitution
//
// If K falls into independent systems, these are solved apart from each other. Vector registers are
// used as the processor has them. The bits are those of the plain routine (solve_skyline_plain.h)
// in all cases. No pivot is tested: a singular K gives infinities or NaNs, without a message.
#pragma once

#include <vector>

#include "skyline/column_counter.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// Solves K u = F.
// K: n columns with values; on return D on the diagonal and the factors of L^T above it. If K falls
//    into independent systems (independent_systems.h), its values are undefined on return.
// F: n; on return y.
// u: n, written completely.
// progress: receives the progress of the factorisation, on the caller's thread; may be empty.
// threads: at most as many factorise; neither bits nor reports depend on it.
// With n = 0 nothing is done or reported.
// Throws a Stop where memory cannot hold the work space.
void SolveSkyline(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                  const ProgressCallback& progress, int threads = 1);

}  // namespace korvex
