// The check of expect_stop.h.
#include "support/expect_stop.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "platform/stop_run.h"

namespace korvex::test {

void ExpectStop(const std::function<void()>& work, const std::string& text) {
  ASSERT_NE(std::freopen("/dev/null", "r", stdin), nullptr);
  int status = 0;
  testing::internal::CaptureStderr();
  try {
    work();
  } catch (const RunStopped& stopped) {
    status = stopped.exitStatus;
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Warning!\n" + text + "\nPress Enter to continue.\n");
  EXPECT_EQ(status, 1);
}

}  // namespace korvex::test
