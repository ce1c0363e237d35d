// solution.json: beside the results of a run, how they were found and how exact they are.
//
//   {"program": "kvx", "model": {"size": 9120, "hash": "85944171f73967e8"},
//    "engine": "sparse", "out_of_core": false, "threads": 2, ..., "digits_lost": 4.9}
//
// It belongs to displacements.bin, which has the same size and hash of the model file: it gets its
// name together with it, and is used only beside it.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "audit/solved_model.h"
#include "engine/plan_solution.h"
#include "engine/solution_record.h"

namespace kvx {

// "auto", "skyline", "sparse"
const char* EngineName(EngineChoice engine);

// Adds engine, out_of_core, threads, equations, free_equations, order_seconds, factor_seconds,
// solve_seconds, bytes, disk_bytes, flops, refinement_steps; and of a record with one load its
// residual, backward_error, condition, digits_lost. What is not known is null, what is infinite
// "infinite". Where several ranks have solved, ranks: elements, entries, flops, bytes of each.
void AddSolutionJson(const SolutionRecord& record, nlohmann::ordered_json& json);

// What a program is told of a solution that was planned: name, out_of_core, reason, equations,
// free_equations, prediction of each engine, and what it was then, or null. fits: the plan can be
// followed; else there is no name. solution: null where nothing was solved.
nlohmann::ordered_json EngineJson(const SolutionPlan& plan, bool fits,
                                  const SolutionRecord* solution);

// The bytes of the file. solution: with one load, that of this model.
std::string SolutionFileText(const ModelFileId& file, const SolutionRecord& solution);

// Reads the file in the current folder. None where there is no such file, where it is not one of
// this model, or not as it was written: then `reason` says so, as a sentence; else it is empty.
std::optional<SolutionRecord> ReadSolutionFile(const ModelFileId& file, std::string& reason);

// The same for those who need no reason.
std::optional<SolutionRecord> ReadSolutionFile(const ModelFileId& file);

// The part of the record that is of one load: what a run leaves beside the results of this load.
SolutionRecord SolutionOfLoad(const SolutionRecord& record, std::size_t load);

}  // namespace kvx
