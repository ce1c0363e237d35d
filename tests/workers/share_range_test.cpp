// Work shared by threads: every item once, in its own place, and the failure that one thread alone
// would have met.
#include "workers/share_range.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "workers/run_threads.h"

namespace korvex {
namespace {

TEST(RunThreads, CallsEachNumberOnceAndZeroOnTheCallersThread) {
  for (const int threads : {-1, 0, 1, 2, 7}) {
    std::vector<std::atomic<int>> calls(8);
    const std::thread::id caller = std::this_thread::get_id();
    std::atomic<bool> isCallers{false};
    RunThreads(threads, [&](int number) {
      ++calls[static_cast<std::size_t>(number)];
      if (number == 0) isCallers = std::this_thread::get_id() == caller;
    });
    EXPECT_TRUE(isCallers);
    for (int number = 0; number < 8; ++number) {
      const int expected = number == 0 || number < threads ? 1 : 0;
      EXPECT_EQ(calls[static_cast<std::size_t>(number)], expected) << threads << ' ' << number;
    }
  }
}

TEST(RunThreads, RethrowsTheExceptionOfTheLowestNumberAfterAllHaveEnded) {
  std::atomic<int> ended{0};
  try {
    RunThreads(4, [&](int number) {
      ++ended;
      if (number == 0) return;
      throw std::runtime_error(std::to_string(number));
    });
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "1");
  }
  EXPECT_EQ(ended, 4);
}

TEST(ShareRange, DoesEveryItemOnceForAnyCountPieceAndThreads) {
  for (const int threads : {0, 1, 2, 3, 8}) {
    for (const std::int64_t count : {0, 1, 2, 63, 64, 65, 1000}) {
      for (const std::int64_t piece : {0, 1, 7, 64, 2000}) {
        std::vector<int> done(static_cast<std::size_t>(count));
        ShareRange(threads, count, piece, [&](std::int64_t first, std::int64_t end) {
          ASSERT_LE(end - first, std::max<std::int64_t>(piece, 1));
          for (std::int64_t i = first; i < end; ++i) ++done[static_cast<std::size_t>(i)];
        });
        EXPECT_EQ(done, std::vector<int>(static_cast<std::size_t>(count), 1))
            << threads << ' ' << count << ' ' << piece;
      }
    }
  }
}

TEST(ShareRange, OneThreadTakesThePiecesInOrder) {
  std::vector<std::int64_t> begins;
  ShareRange(1, 10, 4, [&](std::int64_t first, std::int64_t) { begins.push_back(first); });
  EXPECT_EQ(begins, (std::vector<std::int64_t>{0, 4, 8}));
}

// Items 500 and 900 fail. The failure of 500 is the one that one thread meets.
TEST(ShareRange, ThrowsWhatOneThreadAloneWouldHaveMet) {
  for (const int threads : {1, 2, 8}) {
    for (int run = 0; run < 20; ++run) {
      try {
        ShareRange(threads, 1000, 1, [&](std::int64_t first, std::int64_t) {
          if (first == 500 || first == 900) throw std::runtime_error(std::to_string(first));
        });
        FAIL();
      } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "500") << threads;
      }
    }
  }
}

TEST(ShareRange, NoPieceBeginsAfterAFailureIsKnown) {
  std::vector<std::int64_t> begins;
  const auto fail = [&](std::int64_t first, std::int64_t) {
    begins.push_back(first);
    if (first == 3) throw std::runtime_error("3");
  };
  EXPECT_THROW(ShareRange(1, 1000, 1, fail), std::runtime_error);
  EXPECT_EQ(begins.size(), 4U);
}

TEST(ShareRange, ReportsOnTheCallersThreadNeverFalling) {
  for (const int threads : {1, 3}) {
    const std::thread::id caller = std::this_thread::get_id();
    std::vector<std::int64_t> reports;
    ShareRange(
        threads, 1000, 10, [](std::int64_t, std::int64_t) {},
        [&](std::int64_t items) {
          EXPECT_EQ(std::this_thread::get_id(), caller);
          reports.push_back(items);
        });
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
    EXPECT_EQ(reports.front(), 0);
    if (threads > 1) continue;  // the others may have taken all pieces
    EXPECT_EQ(reports.size(), 100U);
    EXPECT_EQ(reports.back(), 990);
  }
}

TEST(ShareRange, AReportMayEndTheWork) {
  std::atomic<int> pieces{0};
  const auto work = [&](std::int64_t, std::int64_t) { ++pieces; };
  const auto report = [](std::int64_t) { throw std::runtime_error("enough"); };
  for (const int threads : {1, 4}) {
    EXPECT_THROW(ShareRange(threads, 1000, 1, work, report), std::runtime_error);
    EXPECT_EQ(pieces, 0);
  }
}

}  // namespace
}  // namespace korvex
