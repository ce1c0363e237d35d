// The cores of a process that was bound to one of them.
#include "platform/usable_cores.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/container_limit.h"
#include "support/one_core_posix.h"

namespace korvex::test {
namespace {

TEST(UsableCores, AreThoseThatTheProcessIsBoundTo) {
  const int usable = CountUsableCores();
  const OneCore one;
  const double quota = ReadContainerCores("/proc/self/cgroup", "/sys/fs/cgroup");
  EXPECT_EQ(usable, CountCoresWithin(CPU_COUNT(&one.before), quota));
  EXPECT_EQ(CountUsableCores(), 1);
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
