// Pieces made by threads and taken in order by the caller's: every item once, places never shared,
// and the failure that one thread alone would have met.
#include "workers/make_in_order.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <numeric>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace korvex {
namespace {

using Items = std::vector<std::int64_t>;

void Sleep() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

// Makes the items 0 .. count - 1 and returns them as they were taken. With `isSlow` a piece
// takes its time, on other threads than the caller's twice as long.
Items Collect(int threads, std::int64_t count, std::int64_t piece, bool isSlow = false) {
  std::vector<Items> places(static_cast<std::size_t>(CountPlaces(threads)));
  std::vector<std::atomic<int>> users(places.size());
  Items taken;
  const std::thread::id caller = std::this_thread::get_id();
  MakeInOrder(
      threads, count, piece,
      [&](int place, std::int64_t first, std::int64_t end) {
        EXPECT_EQ(++users[static_cast<std::size_t>(place)], 1);
        Items& items = places[static_cast<std::size_t>(place)];
        EXPECT_TRUE(items.empty());
        if (isSlow) Sleep();
        if (isSlow && std::this_thread::get_id() != caller) Sleep();
        for (std::int64_t i = first; i < end; ++i) items.push_back(i);
      },
      [&](int place, std::int64_t first, std::int64_t end) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        Items& items = places[static_cast<std::size_t>(place)];
        EXPECT_EQ(static_cast<std::int64_t>(items.size()), end - first);
        taken.insert(taken.end(), items.begin(), items.end());
        items.clear();
        --users[static_cast<std::size_t>(place)];
      });
  return taken;
}

TEST(MakeInOrder, TakesEveryItemOnceAndInOrder) {
  for (const int threads : {-1, 0, 1, 2, 3, 8}) {
    for (const std::int64_t count : {0, 1, 2, 63, 64, 65, 1000}) {
      for (const std::int64_t piece : {0, 1, 7, 64, 2000}) {
        Items expected(static_cast<std::size_t>(count));
        std::iota(expected.begin(), expected.end(), 0);
        EXPECT_EQ(Collect(threads, count, piece), expected)
            << threads << ' ' << count << ' ' << piece;
      }
    }
  }
}

TEST(MakeInOrder, WaitsForPiecesThatTakeLonger) {
  for (const int threads : {2, 3, 8}) {
    Items expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(Collect(threads, 100, 1, true), expected) << threads;
  }
}

// The first piece takes longest: the others go on until all places are full, and no further.
TEST(MakeInOrder, MemoryIsBounded) {
  constexpr int Threads = 3;
  std::atomic<std::int64_t> made{0};
  std::int64_t taken = 0;
  MakeInOrder(
      Threads, 200, 1,
      [&](int, std::int64_t first, std::int64_t) {
        if (first == 0) std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ++made;
      },
      [&](int, std::int64_t, std::int64_t) {
        EXPECT_LE(made - taken, CountPlaces(Threads));
        ++taken;
      });
  EXPECT_EQ(taken, 200);
}

// Runs 1000 pieces; 500 and 505 throw their number when they are made or taken, `late` some time
// after the other.
void ExpectFailure(int threads, bool isMaking, std::int64_t late) {
  std::int64_t taken = 0;
  const auto fail = [late](std::int64_t first) {
    if (first > 490 && first < 500) Sleep();  // so that other threads are there too
    if (first == late) Sleep();
    if (first == 500 || first == 505) throw std::runtime_error(std::to_string(first));
  };
  try {
    MakeInOrder(
        threads, 1000, 1,
        [&](int, std::int64_t first, std::int64_t) {
          if (isMaking) fail(first);
        },
        [&](int, std::int64_t first, std::int64_t) {
          EXPECT_EQ(first, taken);
          if (!isMaking) fail(first);
          ++taken;
        });
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "500") << threads;
  }
  EXPECT_EQ(taken, 500);
}

TEST(MakeInOrder, ThrowsWhatOneThreadAloneWouldHaveMet) {
  for (const int threads : {1, 2, 8}) {
    for (const std::int64_t late : {500, 505}) {
      for (int run = 0; run < 5; ++run) ExpectFailure(threads, true, late);
      ExpectFailure(threads, false, late);
    }
  }
}

// Piece 3 throws at once. The others take their time: until it is known, they fill their places.
TEST(MakeInOrder, NoPieceBeginsAfterAFailureIsKnown) {
  for (const int threads : {1, 3, 8}) {
    std::atomic<int> begun{0};
    const auto make = [&](int, std::int64_t first, std::int64_t) {
      ++begun;
      if (first == 3) throw std::runtime_error("3");
      Sleep();
    };
    EXPECT_THROW(MakeInOrder(threads, 1000, 1, make, [](int, std::int64_t, std::int64_t) {}),
                 std::runtime_error);
    EXPECT_LE(begun, threads == 1 ? 4 : 4 + CountPlaces(threads)) << threads;
  }
}

}  // namespace
}  // namespace korvex
