// The accuracy of a solution, however it was found.
#pragma once

#include <vector>

#include "engine/solution_record.h"
#include "model/model.h"
#include "skyline/work_share.h"

namespace kvx {

// Residual and backward error of each load over the free dofs, from the element matrices. The
// condition is not estimated: that needs the factors.
// loads, displacements: of each load, NEQ. record: gets `loads`.
// Where memory is too small for that, or an element's stiffness is not finite, nothing is
// estimated: the solution stands without.
void MeasureSolution(const korvex::Model& model, const std::vector<std::vector<double>>& loads,
                     const std::vector<std::vector<double>>& displacements, SolutionRecord& record);

// Sets the condition of all loads, and the digits lost. Those whose condition is 0, because they
// are 0, keep it.
void SetCondition(double condition, SolutionRecord& record);

}  // namespace kvx
