// The cores of a process that was bound to one of them.
#include "platform/usable_cores.h"

#include <gtest/gtest.h>
#include <sched.h>

namespace korvex::test {
namespace {

TEST(UsableCores, AreThoseThatTheProcessIsBoundTo) {
  cpu_set_t all;
  ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
  EXPECT_EQ(CountUsableCores(), CPU_COUNT(&all));
  int core = 0;
  while (!CPU_ISSET(core, &all)) ++core;
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(core, &one);
  ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  EXPECT_EQ(CountUsableCores(), 1);
  sched_setaffinity(0, sizeof all, &all);
}

}  // namespace
}  // namespace korvex::test
