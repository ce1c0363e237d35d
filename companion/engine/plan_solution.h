// Which engine solves a model: predicted time and memory of each, and a choice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/engine_settings.h"
#include "model/model.h"
#include "skyline/work_share.h"
#include "sparse/sparse_factor.h"

namespace kvx {

struct EngineEstimate {
  bool isPossible = false;
  std::string reason;    // why not: a sentence
  double seconds = 0.0;  // assembly, factorisation and all loads
  std::uint64_t bytes = 0, diskBytes = 0;
  std::uint64_t startBytes = 0;  // of the engine's libraries, which no limit of the user's holds
};

struct SolutionPlan {
  EngineChoice engine = EngineChoice::Skyline;  // Skyline or Sparse
  bool isOutOfCore = false;
  std::string reason;  // why this engine: one sentence
  EngineEstimate skyline, sparse, outOfCore;
  std::int64_t equations = 0, freeEquations = 0;
  std::vector<std::int32_t> order;  // of the nodes, for the sparse engine: order[k] stands at place
                                    // k; of those that have a free dof, counted
                                    // by themselves; empty: not looked for
  double orderSeconds = 0.0;        // that it took
  std::vector<RankShare> ranks;     // what each will do and take; empty: not looked at
};

// model: tables and elements as read, NEQ is set. loads: their number.
// share: called now and then; may throw to end the work. May be empty.
// Throws a Stop (StopKind::Notice) where nothing that was allowed fits: the text names the memory
// needed and there, and the alternatives.
void PlanSolution(const korvex::Model& model, std::size_t loads, const EngineSettings& settings,
                  const korvex::ShareCallback& share, SolutionPlan& plan);

}  // namespace kvx
