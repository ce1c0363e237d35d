#include "skyline/solve_loads.h"

#include <utility>

#include "platform/free_memory.h"
#include "platform/vector_bits.h"
#include "skyline/coupled_dofs.h"
#include "skyline/independent_systems.h"

namespace korvex {

void SolveLoads(SkylineMatrix& K, const std::vector<LoadedSystem>& loads, ColumnCounter& columns,
                int threads, SkylineFactor* factor) {
  if (loads.empty()) return;
  std::vector<LoadedSystem> unsolved;
  if (MayDecouple(K)) {
    const std::size_t maxEntries = FindMaxEntries(K, loads.size(), ReadFreeMemory());
    unsolved = SolveIndependentSystems(K, loads, maxEntries, columns, threads, factor);
  } else {
    unsolved = loads;
  }
  if (unsolved.empty()) return;
  if (columns.work != nullptr) columns.work->rest = CountSolutionUnits(K, unsolved.size());
  FactorAndSolve(WidestVectorBits(), K, unsolved, columns, threads);
  if (factor != nullptr) *factor = {std::move(K), {}};
}

void SolveLoads(SkylineMatrix& K, std::vector<std::vector<double>>& F,
                std::vector<std::vector<double>>& u, WorkShare& work, int threads,
                SkylineFactor* factor) {
  std::vector<LoadedSystem> loads;
  for (std::size_t k = 0; k < F.size(); ++k) loads.push_back({&F[k], &u[k]});
  ColumnCounter columns = {{}, CountColumns(K), 0, &work};
  SolveLoads(K, loads, columns, threads, factor);
}

double CountSolutionUnits(const SkylineMatrix& K, std::size_t loads) {
  return CountFactorUnits(K, 0, CountColumns(K)) + CountSubstitutionUnits(K, loads);
}

}  // namespace korvex
