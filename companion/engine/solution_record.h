// What was found out about a solution while it was made: which engine, time, memory, accuracy.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "engine/engine_settings.h"
#include "sparse/sparse_factor.h"

namespace kvx {

// The accuracy of the displacements of one load, over the free dofs. NaN: not estimated.
struct LoadQuality {
  static constexpr double Unknown = std::numeric_limits<double>::quiet_NaN();

  double residual = Unknown;       // |b - K u| / (|K| |u| + |b|), infinity norms
  double backwardError = Unknown;  // the largest |b - K u|(i) / (|K| |u| + |b|)(i)
  double condition = Unknown;   // bound of the relative error over the backward error; 0: no load
  double digitsLost = Unknown;  // log10(condition), not below 0
};

struct SolutionRecord {
  EngineChoice engine = EngineChoice::Skyline;  // Skyline or Sparse
  bool isOutOfCore = false;
  int threads = 1;
  std::int64_t equations = 0, freeEquations = 0;
  double orderSeconds = 0.0;   // order of the equations, and the analysis of it
  double factorSeconds = 0.0;  // matrix and its factorisation
  double solveSeconds = 0.0;   // all loads, and their accuracy
  std::uint64_t bytes = 0;     // of the engine's own tables, at their peak
  std::uint64_t diskBytes = 0;
  double flops = 0.0;              // of the factorisation; 0: not counted
  std::vector<LoadQuality> loads;  // of each load
  int refinementSteps = 0;         // of iterative refinement that were accepted
  std::vector<RankShare> ranks;    // of each process that took part; empty: this one alone
};

}  // namespace kvx
