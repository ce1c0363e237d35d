// Several load vectors of one structure, solved with one factorisation, by the engine of a plan.
#pragma once

#include <vector>

#include "engine/engine_settings.h"
#include "engine/plan_solution.h"
#include "engine/solution_record.h"
#include "model/model.h"
#include "skyline/work_share.h"

namespace kvx {

// With the skyline, each solution has the bits that a run with this load alone would have.
// model: tables and elements, as read; NEQ is set. Its Stiffness is used up and freed on return,
// also where an exception leaves.
// plan: of this model and these settings, from PlanSolution.
// share: called some hundred times or more during long work; may be empty.
// loads: each NEQ, as AssembleLoadVector gives it; used up. displacements: one for each load, NEQ.
// Throws a Stop where a run would. The sparse engine also where a structure can move: the text
// names node and dof.
void SolveTogether(korvex::Model& model, std::vector<std::vector<double>>& loads,
                   const EngineSettings& settings, const SolutionPlan& plan,
                   const korvex::ShareCallback& share,
                   std::vector<std::vector<double>>& displacements, SolutionRecord& record);

}  // namespace kvx
