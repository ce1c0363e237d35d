// The stages of a run, in order, from the model file to the result files.
//
// A stage does not print, wait or change the directory; its findings are stored in the job. The run
// driver goes through these lists and prints between the stages; tests and benchmarks use the same
// lists without output.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "model/model.h"
#include "skyline/column_counter.h"
#include "skyline/work_share.h"

namespace korvex {

// A model and the findings of the stages.
struct Job {
  std::string folder;  // precedes each file name; empty, or ends with a slash
  Model model;
  ProgressCallback progress;                 // called during the factorisation; may be empty
  ShareCallback detailShare;                 // called during the detail models; may be empty
  std::vector<std::string> incompleteFiles;  // output files that could not be written completely
  int inconsistencies = 0;                   // lines to be printed (inconsistencies.h)
  int threads = 1;                           // that the stages may use; results do not depend on it
};

// The report that the run driver prints for a stage, besides its fixed lines.
enum class StageReport { None, MemoryEstimate, SolutionTime };

struct Stage {
  const char* name;        // for tables of times
  void (*work)(Job& job);  // throws a Stop where the run cannot go on
  const char* before;      // console line before the stage; null: none
  const char* after;       // console line after the stage; null: none
  StageReport report = StageReport::None;
  const char* file = nullptr;  // what it writes in the job's folder; null: nothing
};

// From the model file to the assembled, loaded and supported system.
extern const std::array<Stage, 7> AssemblyStages;

// The solution.
extern const Stage SolutionStage;

// From the displacements to the averaged stresses, with their files.
extern const std::array<Stage, 6> ResultStages;

// The detail models of the beams, and the file with them. The companion has a routine of its own in
// their place, which makes them in blocks.
extern const std::array<Stage, 2> DetailStages;

// The end: frees the model.
extern const Stage ReleaseStage;

// Calls f(stage) for all stages in order.
template <typename Function>
void ForAllStages(const Function& f) {
  for (const Stage& stage : AssemblyStages) f(stage);
  f(SolutionStage);
  for (const Stage& stage : ResultStages) f(stage);
  for (const Stage& stage : DetailStages) f(stage);
  f(ReleaseStage);
}

}  // namespace korvex
