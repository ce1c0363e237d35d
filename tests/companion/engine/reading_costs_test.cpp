// How the predicted times grow with the number of loads.
#include "engine/engine_costs.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

double SecondsOutOfCore(std::size_t loads) {
  FactorSize size;
  size.entries = 1e8;
  size.flops = 1e10;
  SparseTask task;
  task.equations = 300000;
  task.loads = loads;
  EngineEstimate estimate;
  PredictOutOfCore(size, task, estimate);
  return estimate.seconds;
}

// 32 loads are solved at a time. The next one reads the factors twice more: as often as any first
// one of a block, and ten times what a load within a block takes at least.
TEST(EngineCosts, CountsTheReadingOfTheFactorsForEachBlock) {
  const double within = SecondsOutOfCore(32) - SecondsOutOfCore(31);
  const double second = SecondsOutOfCore(33) - SecondsOutOfCore(32);
  const double third = SecondsOutOfCore(65) - SecondsOutOfCore(64);
  EXPECT_GT(within, 0.0);
  EXPECT_GT(second, 10.0 * within);
  EXPECT_NEAR(third, second, 1e-9 * SecondsOutOfCore(65));
}

}  // namespace
}  // namespace kvx::test
