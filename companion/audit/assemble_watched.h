// The stiffness of a model, assembled with the bits of a run while its work is counted.
#pragma once

#include <cstddef>

#include "model/model.h"
#include "skyline/work_share.h"

namespace kvx {

// Makes model.Stiffness from the tables and elements, without supports. NEQ is set.
// loads: how many are to be solved. Plans the work for the assembly and their solution, and counts
// that of the assembly: SolveLoads (skyline/solve_loads.h) goes on from there.
// threads: that form the element matrices. Throws a Stop where a run would.
void AssembleWatched(korvex::Model& model, std::size_t loads, korvex::WorkShare& work,
                     int threads = 1);

}  // namespace kvx
