#include "engine/solve_together.h"

#include <chrono>

#include "audit/assemble_watched.h"
#include "engine/solution_quality.h"
#include "engine/solve_sparse.h"
#include "report/check_memory.h"
#include "skyline/solve_loads.h"
#include "system/supports.h"

namespace kvx {

namespace {

void AssembleAndSolve(korvex::Model& model, std::vector<std::vector<double>>& loads, int threads,
                      const korvex::ShareCallback& share,
                      std::vector<std::vector<double>>& displacements) {
  korvex::WorkShare work;
  work.report = share;
  AssembleWatched(model, loads.size(), work, threads);
  korvex::ImposeSupports(model);
  const auto n = static_cast<std::size_t>(model.NEQ);
  displacements.resize(loads.size());
  korvex::AllocateOrStop("the displacements of all loads", n * loads.size(), sizeof(double), [&] {
    for (std::vector<double>& u : displacements) u.assign(n, 0.0);
  });
  korvex::SolveLoads(model.Stiffness, loads, displacements, work, threads);
}

void SolveBySkyline(korvex::Model& model, std::vector<std::vector<double>>& loads,
                    const korvex::ShareCallback& share,
                    std::vector<std::vector<double>>& displacements, SolutionRecord& record) {
  const auto begin = std::chrono::steady_clock::now();
  const std::vector<std::vector<double>> given = loads;
  try {
    AssembleAndSolve(model, loads, record.threads, share, displacements);
  } catch (...) {
    model.Stiffness = {};
    throw;
  }
  record.bytes = model.Stiffness.Values.size() * sizeof(double);
  model.Stiffness = {};
  record.factorSeconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  MeasureSolution(model, given, displacements, record);
}

}  // namespace

void SolveTogether(korvex::Model& model, std::vector<std::vector<double>>& loads,
                   const EngineSettings& settings, const SolutionPlan& plan,
                   const korvex::ShareCallback& share,
                   std::vector<std::vector<double>>& displacements, SolutionRecord& record) {
  record = {};
  record.engine = plan.engine;
  record.isOutOfCore = plan.isOutOfCore;
  record.threads = settings.threads;
  record.equations = plan.equations;
  record.freeEquations = plan.freeEquations;
  record.loads.resize(loads.size());
  if (plan.engine == EngineChoice::Sparse) {
    SolveSparse(model, loads, settings, plan, share, displacements, record);
  } else {
    SolveBySkyline(model, loads, share, displacements, record);
  }
}

}  // namespace kvx
