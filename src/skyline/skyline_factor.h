// The factor that a solution leaves behind, and the solution of a further load with it.
//
// Systems that K falls into (independent_systems.h) stand one behind the other in one skyline, so
// its columns may be in another order than the equations of K.
#pragma once

#include <cstdint>
#include <vector>

#include "skyline/skyline_matrix.h"
#include "skyline/work_share.h"

namespace korvex {

struct SkylineFactor {
  SkylineMatrix columns;                // D on the diagonal and the factors of L^T above it
  std::vector<std::int32_t> equations;  // [n] of K, in the order of the columns; empty: that of K
};

// Solves K u = F for an estimate: as fast as the factor can be read twice, and with sums in an
// order of its own. So the last digits are not those of SolveLoads. Where pivots are 0 or not
// finite, u is infinite or NaN somewhere; nothing is said. x: n; holds F, gets u. work: is told of
// the work, and may throw to end it; null: nobody is. Throws a Stop where memory cannot hold x a
// second time and the pivots.
void SolveFactored(const SkylineFactor& factor, std::vector<double>& x, WorkShare* work);

}  // namespace korvex
