// The accuracy of a solution, however it was found.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/solution_record.h"
#include "model/model.h"
#include "skyline/skyline_factor.h"
#include "skyline/work_share.h"

namespace kvx {

// Residual and backward error of each load over the free dofs, from the element matrices, and the
// condition of all of them together, from one more solution with the skyline's factor.
// loads, displacements: of each load, NEQ. record: gets `loads`.
// factor: of the model's stiffness with its supports (system/supports.h); used up.
// memory: bytes that the factor and the tables here may take together; 0: what is free. Where it
// does not hold both, the factor goes first, and the condition is not estimated. Where it is too
// small for the tables alone, or an element's stiffness is not finite, nothing is: the solution
// stands without.
// work: is told that the work goes on, and may throw to end it.
void MeasureSolution(const korvex::Model& model, const std::vector<std::vector<double>>& loads,
                     const std::vector<std::vector<double>>& displacements,
                     korvex::SkylineFactor& factor, std::uint64_t memory, korvex::WorkShare& work,
                     SolutionRecord& record);

// Infinite where x, of the free dofs, is not finite; 0 where it is 0; else not known yet. x: n.
double ConditionOfSolution(const double* x, std::size_t n);

// Sets the condition of all loads, and the digits lost. NaN: it is not known. Loads whose condition
// is 0, because they are 0, or infinite already, because they have no finite solution, keep it.
void SetCondition(double condition, SolutionRecord& record);

}  // namespace kvx
