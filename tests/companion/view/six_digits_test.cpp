// Six digits against the text of result files: all magnitudes, ties, and both sides of each power
// of ten.
#include "view/six_digits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "base/number_text.h"

namespace kvx::test {
namespace {

// The text of a number as "%.5e" has it from the text of result files: "-1.23400e-07".
std::string TextOf(double number) {
  korvex::NumberBuffer buffer;
  return std::string(korvex::FormatNumber(number, buffer));
}

// The digits and exponent of a result file's text, read as a decimal number without a double:
// "0.00012345" is 123450 x 10^-9.
SixDigits ReadText(const std::string& text) {
  const std::size_t e = text.find('e');
  std::string digits;
  std::int32_t exponent = e == std::string::npos ? 0 : std::stoi(text.substr(e + 1));
  bool isBehind = false;
  for (const char sign : text.substr(0, e)) {
    if (sign == '.') isBehind = true;
    if (sign < '0' || sign > '9') continue;
    digits += sign;
    if (isBehind) --exponent;
  }
  digits.erase(0, digits.find_first_not_of('0'));
  for (; digits.size() < 6; --exponent) digits += '0';
  const std::int32_t value = std::stoi(digits);
  return {text[0] == '-' ? -value : value, exponent};
}

void ExpectDigitsOfText(double number) {
  for (const double each : {number, -number}) {
    const SixDigits expected = ReadText(TextOf(each)), found = RoundToSixDigits(each);
    EXPECT_EQ(found.digits, expected.digits) << TextOf(each);
    EXPECT_EQ(found.exponent, expected.exponent) << TextOf(each);
  }
}

// The number and those next to it.
void ExpectDigitsAround(double number) {
  double below = number, above = number;
  for (int k = 0; k < 3; ++k) {
    ExpectDigitsOfText(below);
    ExpectDigitsOfText(above);
    below = std::nextafter(below, 0.0);
    above = std::nextafter(above, std::numeric_limits<double>::infinity());
  }
}

TEST(KvxSixDigits, OfPlainNumbers) {
  EXPECT_EQ(RoundToSixDigits(1.0).digits, 100000);
  EXPECT_EQ(RoundToSixDigits(1.0).exponent, -5);
  EXPECT_EQ(RoundToSixDigits(-123.4567).digits, -123457);
  EXPECT_EQ(RoundToSixDigits(-123.4567).exponent, -3);
  EXPECT_EQ(RoundToSixDigits(2e9).digits, 200000);
  EXPECT_EQ(RoundToSixDigits(2e9).exponent, 4);
}

TEST(KvxSixDigits, OfZeroAreZero) {
  for (const double zero : {0.0, -0.0}) {
    EXPECT_EQ(RoundToSixDigits(zero).digits, 0);
    EXPECT_EQ(RoundToSixDigits(zero).exponent, 0);
  }
}

// Doubles exactly between two numbers of six digits: the even one is taken, as in the text.
TEST(KvxSixDigits, OfTiesAreEven) {
  EXPECT_EQ(RoundToSixDigits(123456.5).digits, 123456);
  EXPECT_EQ(RoundToSixDigits(123457.5).digits, 123458);
  EXPECT_EQ(RoundToSixDigits(999999.5).digits, 100000);
  EXPECT_EQ(RoundToSixDigits(999999.5).exponent, 1);
  std::mt19937 dice(1);
  for (int k = 0; k < 20000; ++k) {
    const double odd = static_cast<double>(200000 + dice() % 1800000 / 2 * 2 + 1) / 2.0;
    const double power = std::pow(10.0, static_cast<double>(dice() % 16));
    ExpectDigitsAround(odd);
    ExpectDigitsAround(odd * power);  // exact: less than 2^53 and a half
    ExpectDigitsAround(odd / 1024.0);
  }
}

TEST(KvxSixDigits, NextToPowersOfTen) {
  for (int power = -307; power <= 308; ++power) {
    const double ten = std::stod("1e" + std::to_string(power));
    ExpectDigitsAround(ten);
    ExpectDigitsAround(ten * 0.9999995);
    ExpectDigitsAround(ten * 0.99999950000001);
    ExpectDigitsAround(ten * 0.999999);
    ExpectDigitsAround(ten * 1.000005);
  }
}

// Any bits: most have magnitudes that no result has, and take the way by the text.
TEST(KvxSixDigits, OfRandomBits) {
  std::mt19937_64 dice(2);
  for (int k = 0; k < 200000; ++k) {
    const std::uint64_t bits = dice();
    double number = 0.0;
    std::memcpy(&number, &bits, sizeof number);
    if (std::isfinite(number)) ExpectDigitsOfText(number);
  }
}

TEST(KvxSixDigits, OfRandomNumbersOfUsualSize) {
  std::mt19937_64 dice(3);
  for (int k = 0; k < 500000; ++k) {
    const double fraction = static_cast<double>(dice() >> 11U) * 0x1p-53;
    ExpectDigitsOfText(fraction * std::pow(10.0, static_cast<double>(dice() % 120) - 60.0));
  }
}

// Numbers of seven digits that end in 5: no double is the tie itself, and the double's rounding
// decides.
TEST(KvxSixDigits, OfDecimalTies) {
  std::mt19937 dice(4);
  for (int k = 0; k < 100000; ++k) {
    const std::string digits = std::to_string(100000 + dice() % 900000) + '5';
    const int exponent = static_cast<int>(dice() % 60) - 36;
    ExpectDigitsAround(std::stod(digits + 'e' + std::to_string(exponent)));
  }
}

TEST(KvxSixDigits, OfTheSmallestAndLargest) {
  ExpectDigitsAround(std::numeric_limits<double>::max() * 0.999);
  ExpectDigitsOfText(std::numeric_limits<double>::max());
  ExpectDigitsOfText(std::numeric_limits<double>::min());
  ExpectDigitsOfText(std::numeric_limits<double>::denorm_min());
  ExpectDigitsAround(1e60);
  ExpectDigitsAround(1e-60);
}

}  // namespace
}  // namespace kvx::test
