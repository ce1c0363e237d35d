// Several loads of one factor: forward reduction and back substitution side by side.
//
// Up to 24 loads are copied into rows of lanes (panel/lanes.h), and the factor is read once for all
// of them. Each load has the bits that it would have alone. Where an infinity or a NaN occurs,
// whose sign depends on the order of operands (factor_skyline.cpp), the load is solved by the
// single routines.
#pragma once

#include <cstddef>
#include <vector>

#include "skyline/column_counter.h"
#include "skyline/skyline_matrix.h"
#include "skyline/work_share.h"

namespace korvex {

// A load and its solution, n numbers each.
struct LoadedSystem {
  std::vector<double>* F;  // on entry the load, on return y of L y = F
  std::vector<double>* u;  // written completely
};

// Solves L D L^T u = F for each load.
// vectorBits: as for FactorSkyline (factor_skyline.h); with 0 the single routines do the work.
// K: the factors as FactorSkyline leaves them; they do not change.
// work: counts the work, on the caller's thread; null: nobody does.
// threads: as many groups of 24 loads are solved side by side, each in lanes of its own; fewer
// where memory has no room for them.
// Throws a Stop where memory cannot hold the lanes of one group.
void SolveLanes(int vectorBits, SkylineMatrix& K, const std::vector<LoadedSystem>& loads,
                WorkShare* work, int threads = 1);

// Factorises K in place and solves K u = F for each load; a single load needs no lanes. Arguments
// as for SolveLanes and FactorSkyline.
void FactorAndSolve(int vectorBits, SkylineMatrix& K, const std::vector<LoadedSystem>& loads,
                    ColumnCounter& columns, int threads = 1);

// The units of work (work_share.h) of FactorAndSolve without the factorisation. K: its profile.
double CountSubstitutionUnits(const SkylineMatrix& K, std::size_t loads);

}  // namespace korvex
