// The solution by the sparse engine (sparse/): supports eliminated, an order by nested dissection,
// the factors in memory or on a disk.
#pragma once

#include <vector>

#include "engine/engine_settings.h"
#include "engine/plan_solution.h"
#include "engine/solution_record.h"
#include "model/model.h"
#include "skyline/work_share.h"

namespace kvx {

// Arguments as those of SolveTogether (solve_together.h); loads are kept. `record`: fills what the
// plan does not tell.
void SolveSparse(const korvex::Model& model, const std::vector<std::vector<double>>& loads,
                 const EngineSettings& settings, const SolutionPlan& plan,
                 const korvex::ShareCallback& share,
                 std::vector<std::vector<double>>& displacements, SolutionRecord& record);

// What each rank will do and take (ranks/ranks.h): forms the matrix and analyses it, and goes no
// further. Does nothing where there is one, or nothing to solve. loads: their number. plan: gets
// `ranks`. Throws a Stop where SolveSparse would until then.
void PredictRanks(const korvex::Model& model, std::size_t loads, const EngineSettings& settings,
                  SolutionPlan& plan);

}  // namespace kvx
