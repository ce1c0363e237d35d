// How predicted times follow the number of threads. What the times are worth, bench/engines_bench
// measures.
#include "engine/engine_costs.h"

#include <gtest/gtest.h>

#include "platform/usable_cores.h"

namespace kvx::test {
namespace {

// A factorisation whose flops outweigh all else.
double SecondsOf(double front, int threads) {
  FactorSize size;
  size.flops = 1e13;
  size.front = front;
  SparseTask task;
  task.equations = 1000;
  task.loads = 1;
  task.threads = threads;
  EngineEstimate estimate;
  PredictSparse(size, task, estimate);
  return estimate.seconds;
}

TEST(EngineCosts, ThreadsWithoutACoreGainNothing) {
  const int cores = korvex::CountUsableCores();
  EXPECT_EQ(SecondsOf(5000.0, 64 * cores), SecondsOf(5000.0, cores));
}

TEST(EngineCosts, ThreadsHelpLargeFronts) {
  if (korvex::CountUsableCores() < 2) GTEST_SKIP() << "there is one core";
  const double one = SecondsOf(5000.0, 1), two = SecondsOf(5000.0, 2);
  EXPECT_LT(two, one);
  EXPECT_GT(two, 0.5 * one);
  EXPECT_LT(two / one, SecondsOf(100.0, 2) / SecondsOf(100.0, 1));
}

TEST(EngineCosts, NoOrderIsFasterThanTheLeast) {
  SparseTask task;
  task.equations = 100000;
  EngineEstimate estimate;
  PredictSparse(FactorSize{}, task, estimate);
  EXPECT_EQ(estimate.seconds, LeastSparseSeconds(task.equations));
}

TEST(EngineCosts, TheFrontDoesNotMatterToOneThread) {
  EXPECT_EQ(SecondsOf(100.0, 1), SecondsOf(5000.0, 1));
}

}  // namespace
}  // namespace kvx::test
