#include "engine/solve_sparse.h"

#include <algorithm>
#include <chrono>

#include "engine/factor_budget.h"
#include "engine/free_motion.h"
#include "engine/rank_folders.h"
#include "engine/solution_quality.h"
#include "ranks/ranks.h"
#include "sparse/blas_threads.h"
#include "sparse/free_matrix.h"
#include "sparse/node_order.h"
#include "sparse/prescribed.h"
#include "sparse/refined_columns.h"
#include "sparse/row_part.h"
#include "sparse/shared_matrix.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace {

using Clock = std::chrono::steady_clock;

// Shares of the work at which its parts end; the factorisation, which cannot be watched, has most.
constexpr double OrderShare = 0.02, MatrixShare = 0.08, AnalysisShare = 0.12, FactorShare = 0.85;

// The other ranks' parts of a solution. They end the factor together with this rank.
struct RankWork {
  bool hasBegun = false;

  RankWork() = default;
  ~RankWork() {
    if (hasBegun) Tell(RankTask::Release);
  }
  RankWork(const RankWork&) = delete;
  RankWork& operator=(const RankWork&) = delete;
};

struct Solution {
  FactorFolder folder;  // goes last
  const korvex::Model& model;
  const EngineSettings& settings;
  const korvex::ShareCallback& share;
  FreeDofs dofs;
  UpperMatrix A;
  FixedRows C;
  SparseFactor factor;
  std::vector<std::uint64_t> elements;  // that each rank has formed, where there are several
  RankWork others;                      // goes first
};

void Report(const Solution& solution, double share) {
  if (solution.share) solution.share(share);
}

// Work that cannot be watched.
void CallGuarded(Solution& solution, const std::function<void()>& call) {
  MakeGuarded(solution.settings, call, [&] { RemoveFactorFolder(solution.folder); });
}

double SecondsSince(Clock::time_point& begin) {
  const Clock::time_point now = Clock::now();
  const double seconds = std::chrono::duration<double>(now - begin).count();
  begin = now;
  return seconds;
}

// The matrix, by all ranks. Does not look at the other ranks where there is no free dof.
void AssembleMatrix(const NodeGraph& graph, const FreeGraph& free,
                    const std::vector<std::int32_t>& order, const korvex::ShareCallback& report,
                    int threads, Solution& solution) {
  const korvex::Model& model = solution.model;
  if (CountRanks() == 1 || order.empty()) {
    AssembleFree(model, graph, solution.dofs, report, solution.A, solution.C, threads);
    return;
  }
  solution.others.hasBegun = true;
  const auto nodes = static_cast<std::size_t>(CountNodes(graph));
  AssembleShared(model, solution.dofs, ShareNodes(free, order, nodes, CountRanks()), report,
                 solution.A, solution.C, threads, solution.elements);
}

// Order and matrix. Returns the places of the free dofs.
std::vector<std::int32_t> Assemble(const SolutionPlan& plan, Solution& solution,
                                   SolutionRecord& record) {
  Clock::time_point begin = Clock::now();
  NodeGraph graph;
  BuildNodeGraph(solution.model.Tables, graph);
  FreeGraph free;
  BuildFreeGraph(graph, solution.dofs, free);
  std::vector<std::int32_t> order = plan.order;
  if (order.size() != free.nodes.size()) {
    CallGuarded(solution, [&] { FindSparseOrder(free.graph, order); });
  }
  Report(solution, OrderShare);
  record.orderSeconds = plan.orderSeconds + SecondsSince(begin);
  const auto report = [&](double part) {
    Report(solution, OrderShare + part * (MatrixShare - OrderShare));
  };
  AssembleMatrix(graph, free, order, report, record.threads, solution);
  record.factorSeconds = SecondsSince(begin);
  record.bytes = CountBytes(solution.A);
  return PlaceFreeDofs(free, order);
}

void TakeShares(const Solution& solution, std::vector<RankShare>& ranks) {
  ranks = solution.factor.ranks;
  for (std::size_t rank = 0; rank < ranks.size(); ++rank) {
    ranks[rank].elements = solution.elements[rank];
  }
}

void Factorise(const EngineSettings& settings, const SolutionPlan& plan,
               const std::vector<std::int32_t>& places, Solution& solution,
               SolutionRecord& record) {
  Clock::time_point begin = Clock::now();
  FactorSettings factorSettings =
      MakeFactorSettings(settings, solution.A, solution.C,
                         static_cast<std::size_t>(solution.model.NEQ), record.loads.size());
  if (plan.isOutOfCore) {
    MakeRankFolders(settings.outOfCore, solution.folder);
    factorSettings.outOfCore = solution.folder.path.u8string();
  }
  CallGuarded(solution,
              [&] { AnalyseMatrix(solution.A, places, factorSettings, solution.factor); });
  Report(solution, AnalysisShare);
  record.orderSeconds += SecondsSince(begin);
  CallGuarded(solution, [&] { FactorMatrix(solution.A, factorSettings, solution.factor); });
  record.factorSeconds += SecondsSince(begin);
  Report(solution, FactorShare);
  StopWhereFree(solution.model, solution.dofs, solution.factor);
  record.bytes += solution.factor.bytes;
  record.diskBytes = solution.factor.diskBytes;
  record.flops = solution.factor.flops;
  TakeShares(solution, record.ranks);
}

// The displacements of all loads.
void SolveLoads(const std::vector<std::vector<double>>& loads, Solution& solution,
                std::vector<std::vector<double>>& displacements, SolutionRecord& record) {
  const FreeDofs& dofs = solution.dofs;
  ColumnWork work;
  work.count = loads.size();
  work.solve = [&](std::int32_t columns, double* x) {
    Report(solution, FactorShare);
    CallGuarded(solution, [&] { SolveColumns(solution.factor, columns, x); });
  };
  work.make = [&](std::size_t k, double* b) {
    MakeRightSide(dofs, solution.C, loads[k], displacements[k], b);
  };
  work.settle = [&](std::size_t k, const double* x, double* b) {
    TakeFree(dofs, x, displacements[k]);
    SettleFixed(dofs, solution.C, loads[k], displacements[k]);
    MakeRightSide(dofs, solution.C, loads[k], displacements[k], b);
  };
  work.take = [&](std::size_t k, const double* x, const ColumnQuality& quality) {
    TakeFree(dofs, x, displacements[k]);
    LoadQuality& load = record.loads[k];
    load.residual = quality.residual;
    load.backwardError = quality.backwardError;
    load.condition = ConditionOfSolution(x, dofs.equations.size());
  };
  RefinedColumns refined;
  SolveRefined(solution.A, work, refined);
  StopWhereModeIsFree(solution.model, dofs, refined.condition);
  SetCondition(refined.condition.value, record);
  record.refinementSteps = refined.steps;
}

}  // namespace

void SolveSparse(const korvex::Model& model, const std::vector<std::vector<double>>& loads,
                 const EngineSettings& settings, const SolutionPlan& plan,
                 const korvex::ShareCallback& share,
                 std::vector<std::vector<double>>& displacements, SolutionRecord& record) {
  const EngineEstimate& estimate = plan.isOutOfCore ? plan.outOfCore : plan.sparse;
  PrepareBlas(CountRanks() > 1 ? 1 : settings.threads, estimate.bytes);
  Solution solution{{}, model, settings, share, {}, {}, {}, {}, {}, {}};
  ListFreeDofs(model.Tables, solution.dofs);
  displacements.resize(loads.size());
  const std::vector<std::int32_t> places = Assemble(plan, solution, record);
  if (!places.empty()) Factorise(settings, plan, places, solution, record);

  Clock::time_point begin = Clock::now();
  for (std::size_t k = 0; k < loads.size(); ++k) {
    displacements[k].assign(loads[k].size(), 0.0);
    PrescribeFixed(solution.dofs, loads[k], displacements[k]);
  }
  if (!places.empty()) {
    SolveLoads(loads, solution, displacements, record);
  } else {  // all is fixed
    record.loads.assign(loads.size(), {0.0, 0.0, 0.0, 0.0});
  }
  for (std::size_t k = 0; k < loads.size(); ++k) {
    SettleFixed(solution.dofs, solution.C, loads[k], displacements[k]);
  }
  record.solveSeconds = SecondsSince(begin);
  Report(solution, 1.0);
}

void PredictRanks(const korvex::Model& model, std::size_t loads, const EngineSettings& settings,
                  SolutionPlan& plan) {
  if (CountRanks() == 1) return;
  const korvex::ShareCallback share;
  Solution solution{{}, model, settings, share, {}, {}, {}, {}, {}, {}};
  ListFreeDofs(model.Tables, solution.dofs);
  SolutionRecord record;
  record.threads = settings.threads;
  const std::vector<std::int32_t> places = Assemble(plan, solution, record);
  if (places.empty()) return;
  FactorSettings factorSettings = MakeFactorSettings(settings, solution.A, solution.C,
                                                     static_cast<std::size_t>(model.NEQ), loads);
  if (plan.isOutOfCore) factorSettings.outOfCore = settings.outOfCore;
  CallGuarded(solution,
              [&] { AnalyseMatrix(solution.A, places, factorSettings, solution.factor); });
  TakeShares(solution, plan.ranks);
}

}  // namespace kvx
