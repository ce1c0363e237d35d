// The check of expect_stop.h.
#include "support/expect_stop.h"

#include <gtest/gtest.h>

#include "platform/stop_run.h"
#include "support/notices.h"

namespace korvex::test {

void ExpectStop(const std::function<void()>& work, const std::string& text) {
  int status = 0;
  const std::vector<std::string> notices = CollectNotices([&] {
    try {
      work();
    } catch (const RunStopped& stopped) {
      status = stopped.exitStatus;
    }
  });
  EXPECT_EQ(notices, std::vector<std::string>{ExpectedNotice(text)});
  EXPECT_EQ(status, 1);
}

}  // namespace korvex::test
