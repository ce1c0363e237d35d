// The time left of work whose stages go at different speeds.
#include "commands/time_left.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kvx::test {
namespace {

// A tenth of the work in the first 0.6 s, in one go, behind which the first report comes; then the
// rest at an even speed, in `rest` seconds. Called ten times a second, as the line of progress is.
double ShareAt(double seconds, double rest) { return 0.1 + 0.9 * (seconds - 0.6) / rest; }

TEST(TimeLeft, IsRightFromTheFirstOneOn) {
  for (const double rest : {5.0, 60.0, 350.0}) {
    ShareHistory history;
    bool isTold = false;
    for (double seconds = 0.7; seconds < 0.6 + rest; seconds += 0.1) {
      const double share = ShareAt(seconds, rest);
      const double left = ForeseeTimeLeft({seconds, share}, history);
      isTold = isTold || !std::isnan(left);
      if (std::isnan(left)) {
        EXPECT_FALSE(isTold) << "told, and then no more, at " << seconds;
        EXPECT_LT(seconds, 3.0) << rest;
        continue;
      }
      EXPECT_NEAR(left, 0.6 + rest - seconds, 1e-6 * rest) << seconds;
    }
    EXPECT_TRUE(isTold);
  }
}

// Where the speed changes, the estimate follows within half of the time that has gone by.
TEST(TimeLeft, FollowsASpeedThatChanges) {
  ShareHistory history;
  double left = 0.0;
  for (double seconds = 0.0; seconds < 40.0; seconds += 0.1) {
    const double share = seconds < 10.0 ? 0.05 * seconds / 10.0 : 0.05 + 0.01 * (seconds - 10.0);
    left = ForeseeTimeLeft({seconds, share}, history);
  }
  // a hundredth a second since 10 s; the window goes back to 20 s, to a fiftieth of its length
  EXPECT_NEAR(left, (1.0 - 0.349) / 0.01, 1e-6);
}

TEST(TimeLeft, IsUnknownWhereNothingHappens) {
  ShareHistory history;
  for (double seconds = 0.0; seconds < 20.0; seconds += 0.1) {
    EXPECT_TRUE(std::isnan(ForeseeTimeLeft({seconds, 0.3}, history)));
  }
}

}  // namespace
}  // namespace kvx::test
