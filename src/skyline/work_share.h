// The share of long work that is done, for someone who waits for it or wants to end it.
//
// Work is counted in units of the factorisation: one product, subtracted from one entry. So the
// share grows evenly with time, as far as that can be foreseen: where the plan changes (a system
// falls apart into smaller ones), the share goes on from where it is, faster or slower.
#pragma once

#include <functional>

#include "skyline/skyline_matrix.h"

namespace korvex {

// Receives the share of the work that is done, 0 .. 1, never falling. May throw to end the work.
using ShareCallback = std::function<void(double share)>;

struct WorkShare {
  ShareCallback report;  // empty: no reports
  double share = 0.0;    // done, of all
  double rest = 0.0;     // units that are planned and not done
};

// Counts `units` of work as done and reports the share, which is 1 once nothing is left.
void AddWork(double units, WorkShare& work);

// The units of one entry of a factor in the forward reduction or the back substitution of a load,
// or of a group of loads (load_lanes.h). As measured: it takes as long as 80 products of the
// factorisation, because it waits for memory.
inline constexpr double UnitsPerEntry = 80.0;

// The units that columns first .. end - 1 take to be factorised: the sum of their squared heights.
double CountFactorUnits(const SkylineMatrix& K, std::int64_t first, std::int64_t end);

// The stored entries of columns first .. end - 1, each taken UnitsPerEntry times.
double CountEntryUnits(const SkylineMatrix& K, std::int64_t first, std::int64_t end);

}  // namespace korvex
