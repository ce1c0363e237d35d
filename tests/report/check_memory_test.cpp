// Sizes that exceed any memory, at the limits of 64 bits, and the stop of a failing allocation.
#include "report/check_memory.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/free_memory.h"
#include "report/stop.h"
#include "support/expect_stop.h"

namespace korvex {
namespace {

using test::ExpectStop;

constexpr std::uint64_t Largest = std::numeric_limits<std::uint64_t>::max();

TEST(CheckMemory, SizesThatFitPass) {
  CheckMemory("nothing", 0, 8);
  CheckMemory("a small table", 1000, 8);
  CheckMemory("all that there is", ReadFreeMemory() / 2 / 8, 8);
}

// 2^60 items of 8 bytes are 2^33 GB.
TEST(CheckMemory, TheNoticeSaysWhatAndHowMuch) {
  ExpectStop([] { CheckMemory("2 nodal points", std::uint64_t{1} << 60U, 8); },
             "Not enough memory for 2 nodal points: 8.58993e+09 GB.");
}

// In 64 bits this product is 0.
TEST(CheckMemory, AProductBeyond64BitsIsNotEnough) {
  ExpectStop([] { CheckMemory("it", std::uint64_t{1} << 62U, 1U << 10U); },
             "Not enough memory for it: 4.39805e+12 GB.");
  // 2^128 bytes are 2^98 GB.
  ExpectStop([] { CheckMemory("it", Largest, Largest); },
             "Not enough memory for it: 3.16913e+29 GB.");
}

// Twice the free memory and a gigabyte, because the free memory may grow in the meantime.
TEST(CheckMemory, MoreThanIsFreeStops) {
  const std::uint64_t free = ReadFreeMemory();
  ASSERT_LT(free, UnknownMemory);
  EXPECT_THROW(CheckMemory("it", 2 * (free >> 20U) + 1024, 1U << 20U), Stop);
}

TEST(AllocateOrStop, AFailingAllocationStopsWithTheSameNotice) {
  // 3 x 2^30 bytes. Whether or not this passes the check, the notice is the same.
  const char* const notice = "Not enough memory for three gigabytes: 3 GB.";
  ExpectStop(
      [] { AllocateOrStop("three gigabytes", 3, 1U << 30U, [] { throw std::bad_alloc(); }); },
      notice);
  ExpectStop(
      [] { AllocateOrStop("three gigabytes", 3, 1U << 30U, [] { throw std::length_error(""); }); },
      notice);
}

TEST(AllocateItems, ReplacesWhatTheTableHeld) {
  std::vector<int> items{7, 8, 9};
  AllocateItems("two items", 2, items);
  EXPECT_EQ(items, (std::vector<int>{0, 0}));
  AllocateItems("no items", 0, items);
  EXPECT_EQ(items.capacity(), 0U);
}

}  // namespace
}  // namespace korvex
