// Binds this thread, and the programs that it starts, to one of its cores for a while. Linux only.
#pragma once

#include <gtest/gtest.h>
#include <sched.h>

namespace korvex::test {

struct OneCore {
  cpu_set_t before;

  OneCore() {
    EXPECT_EQ(sched_getaffinity(0, sizeof before, &before), 0);
    int core = 0;
    while (core < CPU_SETSIZE - 1 && !CPU_ISSET(core, &before)) ++core;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(core, &one);
    EXPECT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  }
  ~OneCore() { sched_setaffinity(0, sizeof before, &before); }
  OneCore(const OneCore&) = delete;
  OneCore& operator=(const OneCore&) = delete;
};

}  // namespace korvex::test
