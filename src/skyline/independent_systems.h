// The solution of K u = F by independent systems: sets of equations that no entry of K couples,
// such as the membrane and the bending equations of a flat plate parallel to a coordinate plane.
//
// In one skyline, their columns also store the rows of the other systems, all zero; terms with
// these zeros are three quarters of the work. Each system gets a skyline of its own instead. The
// bits stay the same, because a - 0 * x = a for every finite x, unless a is -0. An entry can be -0
// here only if it is -0 at the start (IEEE 754: x - x = +0). So K is solved as one system if an
// entry or load is -0 at the start, or if an infinity or NaN occurs. The sets are found from K's
// entries alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "skyline/column_counter.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// The largest number of non-zeros that SolveIndependentSystems should list: at most one stored
// entry in StoredPerNonZero (coupled_dofs.h), and no more than half the free memory holds beside
// the other tables. freeMemory: bytes.
std::size_t FindMaxEntries(const SkylineMatrix& K, std::uint64_t freeMemory);

// Solves K u = F by independent systems and returns true. Returns false, with K and F unchanged, if
// K has no independent systems, if their skylines would not have less than three quarters of K's
// entries, or if the bits might differ from the solution as one system.
// K: n columns with values; on return with true the values are undefined.
// F: n; on return with true y of L y = F.
// u: n; with true written completely, with false undefined.
// maxEntries: returns false if K has more non-zeros.
// columns: counts the columns of the systems. With false some columns may have been counted, if an
//    infinity or NaN occurred after the solution began.
bool SolveIndependentSystems(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                             std::size_t maxEntries, ColumnCounter& columns);

}  // namespace korvex
