// What is said about engines: which one solves a model and why, how long it takes, and how exact
// the solution is.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "commands/result_table.h"
#include "engine/plan_solution.h"
#include "engine/solution_record.h"

namespace kvx {

// What is told of a plan. Its order of the nodes may be large; the plan keeps it.
SolutionPlan CopyWithoutOrder(SolutionPlan& plan);

// Digits of a double, about: its rounding is 1.1e-16.
inline constexpr double DoubleDigits = 16.0;

// Correct digits of the largest displacements, at least: - log10 of the bound of their relative
// error, the condition times the backward error, which counts with the rounding of a double where
// it is smaller. 0 where the condition is infinite, NaN where that is not known, and where nothing
// moves.
double CountCorrectDigits(const LoadQuality& load);

// "skyline, 2 threads", "sparse, out of core, 2 threads", "sparse, 4 ranks, 1 thread"
std::string EngineText(const SolutionRecord& solution);

// That the detail models were made in several blocks: a sentence.
std::string DetailBlocksText(std::size_t blocks);

// The work and memory of each rank: a row for each.
ResultTable MakeRankTable(const std::vector<RankShare>& ranks);

// "scaled residual 1.2e-16, backward error 2.1e-16; 5.1 of about 16 digits lost"; "all
// digits lost"
std::string AccuracyText(const LoadQuality& load);

// What the progress line says: "Solving (sparse, about 12 s)". what: "Solving".
std::string SolvingText(const std::string& what, const SolutionPlan& plan);

// A row for each engine: time, memory, and why not where it is not possible. fits: the plan can be
// followed.
ResultTable MakePlanTable(const SolutionPlan& plan, bool fits);

// How large the task is: a sentence. loads: their number.
std::string PlanText(const SolutionPlan& plan, std::size_t loads);

}  // namespace kvx
