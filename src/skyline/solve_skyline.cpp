#include "skyline/solve_skyline.h"

#include "skyline/solve_loads.h"

namespace korvex {

void SolveSkyline(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                  const ProgressCallback& progress, int threads) {
  ColumnCounter columns = {progress, static_cast<std::int64_t>(F.size())};
  SolveLoads(K, {{&F, &u}}, columns, threads);
}

}  // namespace korvex
