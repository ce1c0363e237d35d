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
#include "skyline/load_lanes.h"
#include "skyline/skyline_factor.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// The largest number of non-zeros that SolveIndependentSystems should list: at most one stored
// entry in StoredPerNonZero (coupled_dofs.h), and no more than half the free memory holds beside
// the other tables. loads: their number. freeMemory: bytes.
std::size_t FindMaxEntries(const SkylineMatrix& K, std::size_t loads, std::uint64_t freeMemory);

// Solves K u = F by independent systems, for each load whose bits are certain to be those of K as
// one system. Returns the other loads, in their order; their F are unchanged, their u undefined.
// All loads are returned if K has no independent systems, if their skylines would not have less
// than three quarters of K's entries, or if an entry or a load is -0.
// K: n columns with values; unchanged if a load is returned, otherwise undefined.
// loads: the F of solved ones are y of L y = F on return.
// maxEntries: nothing is solved if K has more non-zeros.
// columns: counts the columns of the systems. Where a load is returned, they may have been counted,
//    if an infinity or NaN occurred in the solution. The plan of its work is replaced.
// threads: at most as many factorise.
// factor: where no load is returned, gets the factor of the systems, with the memory of K's values.
//    Null: nobody wants it.
// After an exception the values of K are lost.
std::vector<LoadedSystem> SolveIndependentSystems(SkylineMatrix& K,
                                                  const std::vector<LoadedSystem>& loads,
                                                  std::size_t maxEntries, ColumnCounter& columns,
                                                  int threads = 1, SkylineFactor* factor = nullptr);

}  // namespace korvex
