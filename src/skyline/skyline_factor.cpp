#include "skyline/skyline_factor.h"

#include "platform/vector_bits.h"
#include "report/check_memory.h"
#include "skyline/reorder_load.h"

namespace korvex {

namespace {

// The loads in the order of the columns.
struct OrderedLoad {
  std::vector<double> F, u;
};

}  // namespace

void SolveFactored(SkylineFactor& factor, const std::vector<LoadedSystem>& loads, WorkShare* work,
                   int threads) {
  if (factor.equations.empty()) {
    SolveLanes(WidestVectorBits(), factor.columns, loads, work, threads);
    return;
  }
  const std::size_t n = factor.equations.size();
  std::vector<OrderedLoad> ordered(loads.size());
  std::vector<LoadedSystem> systems;
  for (std::size_t k = 0; k < loads.size(); ++k) {
    AllocateItems("the loads in the order of the factor", n, ordered[k].F);
    AllocateItems("the solutions in the order of the factor", n, ordered[k].u);
    GatherNumbers(factor.equations, *loads[k].F, ordered[k].F);
    systems.push_back({&ordered[k].F, &ordered[k].u});
  }
  SolveLanes(WidestVectorBits(), factor.columns, systems, work, threads);
  for (std::size_t k = 0; k < loads.size(); ++k) {
    ScatterNumbers(factor.equations, ordered[k].u, *loads[k].u);
  }
}

}  // namespace korvex
