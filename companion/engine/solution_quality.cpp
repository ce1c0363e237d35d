// The factor is of K with the supports' penalty. With right sides of 0 at the fixed dofs, its
// solutions are those of the free dofs to about 1e20 over the stiffness: to all digits that an
// estimate needs.
#include "engine/solution_quality.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

#include "base/finite.h"
#include "report/check_memory.h"
#include "report/stop.h"
#include "sparse/column_quality.h"
#include "sparse/condition.h"
#include "sparse/free_matrix.h"
#include "sparse/prescribed.h"

namespace kvx {

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

// What is needed beside the factor until the weights of the condition are known.
struct FreeSystem {
  FreeDofs dofs;
  UpperMatrix A;
  FixedRows C;
};

bool IsThere(const korvex::SkylineFactor& factor) { return !factor.columns.Values.empty(); }

std::uint64_t CountFactorBytes(const korvex::SkylineFactor& factor) {
  return factor.columns.Values.capacity() * sizeof(double);
}

void Assemble(const korvex::Model& model, std::uint64_t memory, korvex::SkylineFactor& factor,
              int threads, FreeSystem& free) {
  NodeGraph graph;
  BuildNodeGraph(model.Tables, graph);
  ListFreeDofs(model.Tables, free.dofs);
  const std::uint64_t bytes = CountMatrixBytes(graph, free.dofs);
  const bool isAllowed = memory == 0 || CountFactorBytes(factor) + bytes <= memory;
  if (!isAllowed || !korvex::HasMemory(bytes, 1)) factor = {};
  AssembleFree(model, graph, free.dofs, {}, free.A, free.C, threads);
}

// Residuals and backward errors. Returns the weights of the condition.
std::vector<double> MeasureLoads(const FreeSystem& free,
                                 const std::vector<std::vector<double>>& loads,
                                 const std::vector<std::vector<double>>& displacements,
                                 SolutionRecord& record) {
  const FreeDofs& dofs = free.dofs;
  QualityTable table;
  BeginQuality(free.A, table);
  std::vector<double> b(dofs.equations.size()), x(b.size()), r(b.size());
  for (std::size_t k = 0; k < loads.size(); ++k) {
    MakeRightSide(dofs, free.C, loads[k], displacements[k], b.data());
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] = displacements[k][static_cast<std::size_t>(dofs.equations[i])];
    }
    const ColumnQuality quality = MeasureColumn(free.A, x.data(), b.data(), table, r.data());
    LoadQuality& load = record.loads[k];
    load.residual = quality.residual;
    load.backwardError = quality.backwardError;
    load.condition = ConditionOfSolution(x.data(), x.size());
    if (!std::isinf(load.condition)) RaiseWeights(x.data(), table);
  }
  return std::move(table.weights);
}

// Whether there is a load whose condition is neither 0 nor infinite.
bool IsConditionLookedFor(const SolutionRecord& record) {
  return std::any_of(record.loads.begin(), record.loads.end(),
                     [](const LoadQuality& load) { return std::isnan(load.condition); });
}

// The condition from one solution of the free dofs by the skyline's factor, which takes as long as
// reading it twice. weights: with signs.
double EstimateCondition(const FreeDofs& dofs, const korvex::SkylineFactor& factor,
                         std::vector<double> weights, korvex::WorkShare& work) {
  std::vector<double> u;
  korvex::AllocateItems("a column for the condition", dofs.places.size(), u);
  TakeFree(dofs, weights.data(), u);
  korvex::SolveFactored(factor, u, &work);
  for (std::size_t i = 0; i < weights.size(); ++i) {
    weights[i] = u[static_cast<std::size_t>(dofs.equations[i])];
  }
  const double value = EstimateFromSigns(weights.data(), weights.size());
  if (std::isnan(value)) return Infinity;
  return value;
}

void Measure(const korvex::Model& model, const std::vector<std::vector<double>>& loads,
             const std::vector<std::vector<double>>& displacements, korvex::SkylineFactor& factor,
             std::uint64_t memory, korvex::WorkShare& work, SolutionRecord& record) {
  record.loads.assign(loads.size(), {});
  FreeSystem free;
  Assemble(model, memory, factor, record.threads, free);
  std::vector<double> weights = MeasureLoads(free, loads, displacements, record);
  free.A = {};
  free.C = {};
  double condition = LoadQuality::Unknown;
  if (IsConditionLookedFor(record) && IsThere(factor)) {
    condition = EstimateCondition(free.dofs, factor, std::move(weights), work);
  }
  SetCondition(condition, record);
}

}  // namespace

void MeasureSolution(const korvex::Model& model, const std::vector<std::vector<double>>& loads,
                     const std::vector<std::vector<double>>& displacements,
                     korvex::SkylineFactor& factor, std::uint64_t memory, korvex::WorkShare& work,
                     SolutionRecord& record) {
  const auto measure = [&] {
    try {
      Measure(model, loads, displacements, factor, memory, work, record);
      return true;
    } catch (const korvex::Stop&) {
      return false;
    } catch (const std::bad_alloc&) {
      return false;
    }
  };
  if (measure()) return;
  const bool hadFactor = IsThere(factor);
  factor = {};
  if (hadFactor && measure()) return;
  record.loads.assign(loads.size(), {});
}

double ConditionOfSolution(const double* x, std::size_t n) {
  if (!korvex::AreFinite(x, n)) return Infinity;
  if (std::all_of(x, x + n, [](double u) { return u == 0.0; })) return 0.0;
  return LoadQuality::Unknown;
}

void SetCondition(double condition, SolutionRecord& record) {
  for (LoadQuality& load : record.loads) {
    if (load.condition != 0.0 && !std::isinf(load.condition)) load.condition = condition;
    load.digitsLost = load.condition < 1.0 ? 0.0 : std::log10(load.condition);
  }
}

}  // namespace kvx
