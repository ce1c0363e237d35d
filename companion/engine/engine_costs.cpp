#include "engine/engine_costs.h"

#include <algorithm>
#include <cmath>

#include "base/dof_counts.h"
#include "base/gigabyte.h"
#include "platform/usable_cores.h"
#include "platform/vector_bits.h"
#include "size/check_size.h"
#include "skyline/reserve_system.h"
#include "sparse/refined_columns.h"

namespace kvx {

namespace {

// What bench/engines_bench.cpp measures, with one thread of a processor. Seconds for an equation of
// shells: forming the element matrices and adding them. The skyline does it twice, the second time
// for the residual.
constexpr double AssemblySeconds = 1.3e-6;
constexpr double SkylineAssemblies = 2.0;

// Seconds for an entry of the skyline: to provide and clear it, and for each vector of 8 loads, as
// skyline/work_share.h has them in units of the factorisation. Several loads stand in rows of up to
// 24 lanes (skyline/load_lanes.h).
constexpr double StoreSeconds = 6.5e-9, LoadSeconds = 4.3e-9;
constexpr std::size_t LoadLanes = 8, MostLanes = 24;

// Rows of a column for each thread that shortens the factorisation (skyline/panel_pipeline.h).
constexpr double RowsPerThread = 48.0;

// Of the sparse engine, on plates, grillages, box girders and lattices of 3,000 to 1,000,000
// equations: flops per second in large fronts, seconds for an entry of L in small ones, for an
// equation in METIS, analysis and the accuracy, and for an entry of L and a column in a solution.
// There are two solutions, of the loads and of their refinement, with some columns for the
// condition beside (sparse/refined_columns.h).
constexpr double SparseRate = 20e9;
constexpr double EntrySeconds = 8e-9;
constexpr double OrderSeconds = 4.0e-6;
constexpr double FirstColumnSeconds = 1.7e-9, NextColumnSeconds = 0.3e-9;
constexpr double Solutions = 2.0;
constexpr double ConditionColumns = 1.0 + ModeColumns;

// What each further thread adds to the skyline's first; panels wait for little.
constexpr double SkylineThreadGain = 0.8;

// The share of a factorisation with large fronts that threads of BLAS divide among themselves: the
// rest, and fronts of few rows, stay with one.
constexpr double DividedShare = 0.57, DividedFront = 1000.0;

// MUMPS stores fronts with the zeros that joining small ones brings, as rectangles; it has a fifth
// more space than it foresees, and tables of its own for each equation.
constexpr double StorageFactor = 1.25;
constexpr double SpaceFactor = 1.4;
constexpr double TableBytes = 300.0;  // per equation

// A disk of a virtual machine: bytes per second that are written and read.
constexpr double DiskRate = 3e8;

// Blocks of loads, each of which reads the factors twice: for the loads and for their refinement.
double CountBlocks(std::size_t loads) {
  return std::max(1.0, std::ceil(static_cast<double>(loads) / static_cast<double>(BlockColumns)));
}

// Solutions beyond those of one block.
double CountFurtherSolutions(std::size_t loads) { return 2.0 * (CountBlocks(loads) - 1.0); }

// Threads that have a core.
int CountRunning(int threads) { return std::max(std::min(threads, korvex::CountUsableCores()), 1); }

// How much faster the skyline's threads are than one.
double SkylineSpeed(int threads) { return 1.0 + SkylineThreadGain * (threads - 1); }

// The same of the sparse engine: what is divided, over the threads, and the rest (Amdahl 1967).
double SparseSpeed(int threads, double front) {
  const double divided = DividedShare * std::min(front / DividedFront, 1.0);
  return 1.0 / (1.0 - divided + divided / threads);
}

// loads: vectors of all equations that are there at once.
double VectorBytes(double equations, std::size_t loads) {
  return 3.0 * sizeof(double) * equations * static_cast<double>(std::max<std::size_t>(loads, 1));
}

double BytesBeside(const SparseTask& task) {
  // the matrix, and its places as MUMPS wants them
  constexpr double Copies = 20.0 / 12.0;
  const auto equations = static_cast<double>(task.equations);
  return Copies * static_cast<double>(task.matrixBytes) + static_cast<double>(task.fixedBytes) +
         TableBytes * equations + VectorBytes(equations, task.loads) +
         static_cast<double>(
             CountColumnBytes(static_cast<std::size_t>(task.equations), task.loads));
}

}  // namespace

void PredictSkyline(const NodeGraph& graph, std::size_t loads, int threads,
                    EngineEstimate& estimate) {
  BestOrder given;
  given.cost = given.givenCost = MeasureOrder(graph, GivenOrder(graph));
  const SolutionSize size = PredictSize(given, korvex::WidestVectorBits());
  const double equations = static_cast<double>(CountNodes(graph)) * korvex::DofsPerNode;
  const double entries = given.cost.entries;
  // without equations there is nothing to share
  const double mostThreads = equations > 0.0 ? entries / (RowsPerThread * equations) : 1.0;
  const int useful =
      std::min(CountRunning(threads), static_cast<int>(std::clamp(mostThreads, 1.0, 1e6)));
  const std::size_t vectors = (loads + LoadLanes - 1) / LoadLanes;
  estimate.seconds = size.seconds / SkylineSpeed(useful) +
                     static_cast<double>(vectors) * LoadSeconds * entries + StoreSeconds * entries +
                     SkylineAssemblies * AssemblySeconds * equations;
  const std::size_t lanes = loads > 1 ? std::min(loads, MostLanes) : 0;
  estimate.bytes = static_cast<std::uint64_t>(
      size.gigabytes * korvex::BytesPerGigabyte +
      static_cast<double>(korvex::BytesPerEquation) * equations + VectorBytes(equations, loads) +
      static_cast<double>(lanes * sizeof(double)) * equations);
}

double LeastSparseSeconds(std::int64_t equations) {
  return static_cast<double>(equations) * (OrderSeconds + AssemblySeconds);
}

void PredictSparse(const FactorSize& size, const SparseTask& task, EngineEstimate& estimate) {
  const double columns =
      (Solutions + CountFurtherSolutions(task.loads)) * FirstColumnSeconds +
      (Solutions * static_cast<double>(task.loads) + ConditionColumns) * NextColumnSeconds;
  estimate.seconds =
      (size.flops / SparseRate) / SparseSpeed(CountRunning(task.threads), size.front) +
      size.entries * (EntrySeconds + columns) + LeastSparseSeconds(task.equations);
  estimate.bytes =
      static_cast<std::uint64_t>(SpaceFactor * sizeof(double) * size.peak + BytesBeside(task));
}

void PredictOutOfCore(const FactorSize& size, const SparseTask& task, EngineEstimate& estimate) {
  PredictSparse(size, task, estimate);
  const double disk = StorageFactor * sizeof(double) * size.entries;
  estimate.diskBytes = static_cast<std::uint64_t>(disk);
  estimate.seconds += disk / DiskRate * (1.0 + Solutions + CountFurtherSolutions(task.loads));
  estimate.bytes =
      static_cast<std::uint64_t>(SpaceFactor * sizeof(double) * size.stack + BytesBeside(task));
}

}  // namespace kvx
