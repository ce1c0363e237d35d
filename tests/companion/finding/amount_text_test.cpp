// Amounts of memory and time as texts: one unit, and rounding that never hides what does not fit.
#include <gtest/gtest.h>

#include "finding/amount_text.h"

namespace kvx::test {
namespace {

constexpr std::uint64_t Gigabyte = std::uint64_t{1} << 30U;

// Rounded up what is needed, and down what there is: so that what is said to fit does, and what
// does not never reads the same.
TEST(AmountText, RoundsMemoryApart) {
  EXPECT_EQ(GigabyteText(0), "0 GB");
  EXPECT_EQ(GigabyteText(1), "0.001 GB");
  EXPECT_EQ(AllowedText(Gigabyte / 1024), "0 GB");  // 0.00098
  EXPECT_EQ(GigabyteText(Gigabyte / 2), "0.5 GB");
  EXPECT_EQ(GigabyteText(Gigabyte / 2 + 1), "0.51 GB");
  EXPECT_EQ(AllowedText(Gigabyte / 2 - 1), "0.49 GB");
  EXPECT_EQ(GigabyteText(Gigabyte / 64), "0.016 GB");    // 0.015625
  EXPECT_EQ(GigabyteText(11 * Gigabyte / 4), "2.8 GB");  // 2.75
  EXPECT_EQ(AllowedText(11 * Gigabyte / 4), "2.7 GB");
  EXPECT_EQ(GigabyteText(123 * Gigabyte + 1), "124 GB");
  EXPECT_EQ(GigabyteNumber(123 * Gigabyte), "123");
  for (std::uint64_t bytes = 1; bytes < std::uint64_t{1} << 45U; bytes += bytes / 3 + 1) {
    EXPECT_NE(GigabyteText(bytes), AllowedText(bytes - 1)) << bytes;
  }
}

TEST(AmountText, TellsTimesInTwoDigits) {
  EXPECT_EQ(DurationText(0.03), "less than 0.1 s");
  EXPECT_EQ(DurationText(0.123), "0.12 s");
  EXPECT_EQ(DurationText(1.234), "1.2 s");
  EXPECT_EQ(DurationText(12.4), "12 s");
  EXPECT_EQ(DurationText(100.4), "100 s");
  EXPECT_EQ(DurationText(150.0), "3 min");
  EXPECT_EQ(DurationText(9000.0), "2.5 h");
  EXPECT_EQ(AboutText(0.03), "less than 0.1 s");
  EXPECT_EQ(AboutText(12.4), "about 12 s");
}

}  // namespace
}  // namespace kvx::test
