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
                      korvex::WorkShare& work, std::vector<std::vector<double>>& displacements,
                      korvex::SkylineFactor& factor) {
  AssembleWatched(model, loads.size(), work, threads);
  korvex::ImposeSupports(model);
  const auto n = static_cast<std::size_t>(model.NEQ);
  displacements.resize(loads.size());
  korvex::AllocateOrStop("the displacements of all loads", n * loads.size(), sizeof(double), [&] {
    for (std::vector<double>& u : displacements) u.assign(n, 0.0);
  });
  korvex::SolveLoads(model.Stiffness, loads, displacements, work, threads, &factor);
}

void SolveBySkyline(korvex::Model& model, std::vector<std::vector<double>>& loads,
                    const EngineSettings& settings, const korvex::ShareCallback& share,
                    std::vector<std::vector<double>>& displacements, SolutionRecord& record) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point begin = Clock::now();
  const std::vector<std::vector<double>> given = loads;
  korvex::WorkShare work;
  work.report = share;
  korvex::SkylineFactor factor;
  try {
    AssembleAndSolve(model, loads, record.threads, work, displacements, factor);
  } catch (...) {
    model.Stiffness = {};
    throw;
  }
  record.bytes = static_cast<std::uint64_t>(model.Stiffness.SkylineSize) * sizeof(double);
  model.Stiffness = {};
  const Clock::time_point end = Clock::now();
  record.factorSeconds = std::chrono::duration<double>(end - begin).count();
  MeasureSolution(model, given, displacements, factor, settings.memory, work, record);
  record.solveSeconds = std::chrono::duration<double>(Clock::now() - end).count();
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
    SolveBySkyline(model, loads, settings, share, displacements, record);
  }
}

}  // namespace kvx
