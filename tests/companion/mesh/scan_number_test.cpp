// Numbers of decks: what is one, what is none, and what no double holds.
#include "mesh/scan_number.h"

#include <gtest/gtest.h>

#include <string>

namespace kvx::test {
namespace {

TEST(ScanNumber, TakesWholeNumbersAlone) {
  double x = 0.0;
  EXPECT_TRUE(ScanDouble("1.5D-3", x));
  EXPECT_EQ(x, 1.5e-3);
  EXPECT_TRUE(ScanDouble("+.5", x));
  EXPECT_EQ(x, 0.5);
  EXPECT_TRUE(ScanDouble("1.", x));
  EXPECT_EQ(x, 1.0);
  EXPECT_TRUE(ScanDouble("-1e-999", x));
  EXPECT_EQ(x, 0.0);
  // By the place of the first digit, not by the sign of the exponent: 1e395 is no small number.
  const std::string zeros(400, '0');
  EXPECT_FALSE(ScanDouble("1" + zeros + "e-5", x));
  EXPECT_TRUE(ScanDouble("0." + zeros + "1", x));
  EXPECT_EQ(x, 0.0);
  EXPECT_TRUE(ScanDouble("-0." + zeros + "1e+5", x));
  EXPECT_EQ(x, 0.0);
  EXPECT_FALSE(ScanDouble("1e+99999999999999999999", x));
  EXPECT_TRUE(ScanDouble("1e-99999999999999999999", x));
  for (const char* text : {"", ".", "+", "+-1", "1e", "1,5", "0x10", "inf", "nan", "1e999", " 1",
                           "1 ", "e5", "1.5.2"}) {
    EXPECT_FALSE(ScanDouble(text, x)) << text;
  }
  std::int64_t n = 0;
  EXPECT_TRUE(ScanInteger("-12", n));
  EXPECT_EQ(n, -12);
  EXPECT_TRUE(ScanInteger("+7", n));
  EXPECT_EQ(n, 7);
  for (const char* text : {"", "-", "+-1", "1.0", "9223372036854775808", "1 "}) {
    EXPECT_FALSE(ScanInteger(text, n)) << text;
  }
}

TEST(ScanNumber, TrimsBlanks) {
  EXPECT_EQ(TrimBlanks(" \ta b\t "), "a b");
  EXPECT_EQ(TrimBlanks(" \t "), "");
}

}  // namespace
}  // namespace kvx::test
