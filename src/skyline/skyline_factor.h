// The factor that a solution leaves behind, and the solution of further loads with it.
//
// Systems that K falls into (independent_systems.h) stand one behind the other in one skyline, so
// its columns may be in another order than the equations of K.
#pragma once

#include <cstdint>
#include <vector>

#include "skyline/load_lanes.h"
#include "skyline/skyline_matrix.h"
#include "skyline/work_share.h"

namespace korvex {

struct SkylineFactor {
  SkylineMatrix columns;  // D on the diagonal and the factors of L^T above it
  std::vector<std::int32_t> equations;  // [n] of K, in the order of the columns; empty: that of K
};

// Solves K u = F for each load with the factor of K, which does not change. Where pivots are 0 or
// not finite, u is infinite or NaN somewhere; nothing is said.
// loads: F are undefined on return.
// work: counts the work, on the caller's thread; null: nobody does.
// threads: as for SolveLanes (load_lanes.h).
// Throws a Stop where memory cannot hold the lanes.
void SolveFactored(SkylineFactor& factor, const std::vector<LoadedSystem>& loads, WorkShare* work,
                   int threads = 1);

}  // namespace korvex
