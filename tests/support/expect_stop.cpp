#include "support/expect_stop.h"

#include <gtest/gtest.h>

namespace korvex::test {

void ExpectStop(const std::function<void()>& work, const std::string& text, StopKind kind) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  bool isStopped = false;
  try {
    work();
  } catch (const Stop& stop) {
    isStopped = true;
    EXPECT_EQ(stop.text, text);
    EXPECT_EQ(stop.kind, kind);
  }
  EXPECT_TRUE(isStopped) << text;
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace korvex::test
