// The counter that measures the time of the solution.
#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace korvex {
namespace {

TEST(Clock, RunsForwardAndFinelyEnough) {
  EXPECT_GE(ReadPerformanceFrequency(), 1000000);  // hundredths of a second are shown
  EXPECT_EQ(ReadPerformanceFrequency(), ReadPerformanceFrequency());
  const std::int64_t before = ReadPerformanceCounter();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  const std::int64_t after = ReadPerformanceCounter();
  // A sleep can be shorter than asked by at most one tick of the system's timer.
  EXPECT_GE(static_cast<double>(after - before) / static_cast<double>(ReadPerformanceFrequency()),
            0.03);
}

}  // namespace
}  // namespace korvex
