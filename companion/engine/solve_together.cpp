#include "engine/solve_together.h"

#include "audit/assemble_watched.h"
#include "report/check_memory.h"
#include "skyline/solve_loads.h"
#include "system/supports.h"

namespace kvx {

namespace {

void AssembleAndSolve(korvex::Model& model, std::vector<std::vector<double>>& loads,
                      const korvex::ShareCallback& share,
                      std::vector<std::vector<double>>& displacements) {
  korvex::WorkShare work;
  work.report = share;
  AssembleWatched(model, loads.size(), work);
  korvex::ImposeSupports(model);
  const auto n = static_cast<std::size_t>(model.NEQ);
  displacements.resize(loads.size());
  korvex::AllocateOrStop("the displacements of all loads", n * loads.size(), sizeof(double), [&] {
    for (std::vector<double>& u : displacements) u.assign(n, 0.0);
  });
  korvex::SolveLoads(model.Stiffness, loads, displacements, work);
}

}  // namespace

void SolveTogether(korvex::Model& model, std::vector<std::vector<double>>& loads,
                   const korvex::ShareCallback& share,
                   std::vector<std::vector<double>>& displacements) {
  try {
    AssembleAndSolve(model, loads, share, displacements);
  } catch (...) {
    model.Stiffness = {};
    throw;
  }
  model.Stiffness = {};
}

}  // namespace kvx
