// Which result files in a folder are those of this model: each is compared byte for byte with what
// the solver writes from these displacements, as it is written; no file is made on the way.
//
// A file of an earlier state of the model, of another model, or of a run that broke off is found,
// whatever its date. The log is not compared: it holds a time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "audit/solved_model.h"
#include "skyline/work_share.h"

namespace kvx {

enum class ResultFit {
  Same,
  Missing,
  Truncated,  // what is there is right, but the end is missing
  Differs,    // stale, or foreign
  Unknown,    // it cannot be read, or this model has no such result
};

struct ResultState {
  const char* name = "";  // of the file in the folder (run/file_names.h)
  ResultFit fit = ResultFit::Unknown;
  std::uint64_t line = 0;  // the first line that differs, 1-based; 0 where none does
  std::string reason;      // of Unknown, as a sentence
};

// For someone who waits. Both may be empty, and may throw to interrupt the work.
struct ComparisonProgress {
  std::function<void(const char* name)> before;  // called before a file that is there is compared
  korvex::ShareCallback details;                 // called while the detail models are made
};

// results: the six files in the order in which a run writes them. folder: precedes the names;
// empty, or ends with a slash. solved: gets the stresses of shells and what is kept of the detail
// models, as far as the files that are there need them. Detail models may take longer than the
// solution; they are made in blocks where the memory does not hold all of them.
// threads: for stresses, averages, detail models and the text of files.
void CompareResults(const std::string& folder, const ComparisonProgress& progress,
                    SolvedModel& solved, std::vector<ResultState>& results, int threads = 1);

}  // namespace kvx
