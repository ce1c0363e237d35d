#include "skyline/solve_skyline.h"

#include "platform/free_memory.h"
#include "platform/vector_bits.h"
#include "skyline/coupled_dofs.h"
#include "skyline/factor_skyline.h"
#include "skyline/independent_systems.h"
#include "skyline/substitute_back.h"

namespace korvex {

void SolveSkyline(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                  const ProgressCallback& progress) {
  ColumnCounter columns = {progress, static_cast<std::int64_t>(F.size())};
  if (MayDecouple(K)) {
    const std::size_t maxEntries = FindMaxEntries(K, ReadFreeMemory());
    if (SolveIndependentSystems(K, F, u, maxEntries, columns)) return;
  }
  FactorSkyline(WidestVectorBits(), K, F, columns);
  SubstituteBack(K, F, u);
}

}  // namespace korvex
