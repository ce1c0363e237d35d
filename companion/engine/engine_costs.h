// Predicted time and memory of the engines, from what is known before: the order of the nodes.
//
// Times are of a processor core of 3 GHz, as measured; others differ by a factor of about two, all
// engines alike. Where a plane structure falls into two systems, both engines take a quarter of the
// work; neither prediction looks for that.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/plan_solution.h"
#include "renumber/node_graph.h"
#include "sparse/factor_size.h"

namespace kvx {

// The skyline with the nodes in the order of the model. Fills seconds and bytes, as all these.
void PredictSkyline(const NodeGraph& graph, std::size_t loads, int threads,
                    EngineEstimate& estimate);

struct SparseTask {
  std::int64_t equations = 0;     // of the free dofs
  std::uint64_t matrixBytes = 0;  // of the free dofs (free_matrix.h)
  std::uint64_t fixedBytes = 0;   // of the rows of the fixed ones
  std::size_t loads = 0;
  int threads = 1;
};

// What the sparse engine takes at least for so many free equations, whatever their order is.
double LeastSparseSeconds(std::int64_t equations);

void PredictSparse(const FactorSize& size, const SparseTask& task, EngineEstimate& estimate);
void PredictOutOfCore(const FactorSize& size, const SparseTask& task, EngineEstimate& estimate);

}  // namespace kvx
