// The cores of a process that was bound to one of them.
#include "platform/usable_cores.h"

#include <gtest/gtest.h>
#include <sched.h>

#include <limits>

#include "platform/container_limit.h"

namespace korvex::test {
namespace {

TEST(UsableCores, AreThoseThatTheProcessIsBoundTo) {
  cpu_set_t all;
  ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
  const double quota = ReadContainerCores("/proc/self/cgroup", "/sys/fs/cgroup");
  EXPECT_EQ(CountUsableCores(), CountCoresWithin(CPU_COUNT(&all), quota));
  int core = 0;
  while (!CPU_ISSET(core, &all)) ++core;
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(core, &one);
  ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  EXPECT_EQ(CountUsableCores(), 1);
  sched_setaffinity(0, sizeof all, &all);
}

TEST(UsableCores, AreNoMoreThanTheQuotaOfAContainer) {
  EXPECT_EQ(CountCoresWithin(8, std::numeric_limits<double>::infinity()), 8);
  EXPECT_EQ(CountCoresWithin(8, 8.0), 8);
  EXPECT_EQ(CountCoresWithin(2, 7.9), 2);
  EXPECT_EQ(CountCoresWithin(8, 3.0), 3);
  EXPECT_EQ(CountCoresWithin(8, 1.5), 2);
  EXPECT_EQ(CountCoresWithin(8, 1.4), 1);
  EXPECT_EQ(CountCoresWithin(8, 0.1), 1);
}

}  // namespace
}  // namespace korvex::test
