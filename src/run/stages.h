// The stages of a run, in order: what is done to a model between its file and its result files.
//
// A stage neither prints, waits nor changes the directory; what it has to say stands in the job.
// The run goes through these lists and speaks between the stages; tests and measurements go through
// them in silence.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "model/model.h"
#include "skyline/column_counter.h"

namespace korvex {

// A model on its way through the stages.
struct Job {
  std::string folder;  // stands before each file name; empty, or ends with a slash
  Model model;
  ProgressCallback progress;                 // hears of the factorisation; may be empty
  std::vector<std::string> incompleteFiles;  // output files that could not be written whole
  int inconsistencies = 0;                   // records whose counts disagree, as often as seen
};

// What the run adds to a stage besides its fixed lines.
enum class StageReport { None, MemoryEstimate, SolutionTime };

struct Stage {
  const char* name;        // for tables of times
  void (*work)(Job& job);  // throws a Stop where the job cannot go on
  const char* before;      // line on the console before the stage; null: none
  const char* after;       // line on the console behind it; null: none
  StageReport report = StageReport::None;
};

// From the model file to the assembled, loaded and supported system.
extern const std::array<Stage, 7> AssemblyStages;

// The solution.
extern const Stage SolutionStage;

// From the displacements to the result files.
extern const std::array<Stage, 9> ResultStages;

// Calls f(stage) for all stages in order.
template <typename Function>
void ForAllStages(const Function& f) {
  for (const Stage& stage : AssemblyStages) f(stage);
  f(SolutionStage);
  for (const Stage& stage : ResultStages) f(stage);
}

}  // namespace korvex
