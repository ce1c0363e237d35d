// The solution of K u = F for several loads with one factorisation.
//
// Each load gets the bits that SolveSkyline (solve_skyline.h) gives it alone. Independent systems
// are used as there. Loads that they may not solve (independent_systems.h) are solved with K as one
// system: there is at most one factorisation of the systems and one of K.
#pragma once

#include <vector>

#include "skyline/column_counter.h"
#include "skyline/load_lanes.h"
#include "skyline/skyline_factor.h"
#include "skyline/skyline_matrix.h"
#include "skyline/work_share.h"

namespace korvex {

// Solves K u = F for each load.
// K: n columns with values; as in SolveSkyline, undefined on return if K falls into independent
//    systems.
// columns: counts the columns once, however many loads there are. The plan of its work is replaced.
// threads: at most as many factorise, and solve groups of loads (load_lanes.h); neither bits nor
//    the console's reports depend on it. All reports are made on the caller's thread.
// factor: gets the factor, with the memory of K's values. Null: nobody wants it.
// With n = 0 or without loads nothing is done or reported.
// Throws a Stop where memory cannot hold the work space. After it, and where a report throws, the
// values of K, of F and of u are undefined.
void SolveLoads(SkylineMatrix& K, const std::vector<LoadedSystem>& loads, ColumnCounter& columns,
                int threads = 1, SkylineFactor* factor = nullptr);

// The same for as many F as u, each n numbers.
void SolveLoads(SkylineMatrix& K, std::vector<std::vector<double>>& F,
                std::vector<std::vector<double>>& u, WorkShare& work, int threads = 1,
                SkylineFactor* factor = nullptr);

// The units of work (work_share.h) that this takes with K as one system.
double CountSolutionUnits(const SkylineMatrix& K, std::size_t loads);

}  // namespace korvex
