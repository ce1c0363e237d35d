// The solution of K u = F where K falls into systems that share no entry.
//
// The membrane and the bending of a flat plate parallel to a coordinate plane are two such systems,
// the two ways in which a plane frame deflects, too. In one skyline they stand mixed: the columns
// of one have the rows of the other, all zero, and terms with them are three quarters of the work.
// Apart, in skylines of their own, the bits are the same. A zero times a finite number leaves every
// sum as it is that is not -0, and sums of a factorisation that do not begin with -0 never are
// (IEEE 754: x - x = +0). Where one begins with -0, or something is not finite, K stays whole.
//
// The sets of equations are found in K itself, so that nothing has to be known of elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "skyline/column_counter.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// The most entries that SolveIndependentSystems is to list: what pays, and what half of so many
// bytes of free memory holds beside its tables.
std::size_t FindMaxEntries(const SkylineMatrix& K, std::uint64_t freeMemory);

// Solves K u = F by its independent systems and returns true; or leaves K and F as they are and
// returns false: where K has none, where apart they would not have less than three quarters of the
// stored entries, or where the bits might not be those of the whole.
// K: n columns with values, which are used up with true.
// F: n; holds y of L y = F afterwards, with true.
// u: n, written completely with true; with false it may hold anything.
// maxEntries: K stays whole if more entries are not zero.
// columns: those of the systems are counted there; where it turns out too late that K has to be
//    solved as a whole, some have been.
bool SolveIndependentSystems(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                             std::size_t maxEntries, ColumnCounter& columns);

}  // namespace korvex
