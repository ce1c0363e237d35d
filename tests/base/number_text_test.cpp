// Numbers as text against the formatting of a C++ stream and of the C++ library's to_chars: over
// all magnitudes, next to every value where digits or notation change, and next to halves of the
// last digit, where the error of the quick conversion would show.
#include "base/number_text.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <vector>

namespace korvex {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

std::string Format(double number) {
  NumberBuffer buffer;
  return std::string(FormatNumber(number, buffer));
}

std::string StreamText(double number) {
  std::ostringstream stream;
  stream << number;
  return stream.str();
}

// The C++ library's shortcut, four times faster than a stream; the standard defines it by printf.
std::string LibraryText(double number) {
  char text[40];
  const auto end = std::to_chars(text, text + sizeof text, number, std::chars_format::general, 6);
  return {text, end.ptr};
}

void ExpectStreamText(double number) {
  EXPECT_EQ(Format(number), StreamText(number));
  EXPECT_EQ(Format(-number), StreamText(-number));
}

TEST(NumberText, PlainNumbers) {
  for (const double number : {0.0, 1.0, 2.5, 0.1, 0.3, 10.0, 100000.0, 123456.0, 0.0625, 1e-3}) {
    ExpectStreamText(number);
  }
  EXPECT_EQ(Format(-0.0), "-0");
  EXPECT_EQ(Format(-2.50), "-2.5");
}

// Fixed from 1e-4 to below 1e6, after rounding.
TEST(NumberText, ChangesOfNotation) {
  for (const double number :
       {999999.0, 999999.4999, 999999.5, 999999.6, 1e6, 1234567.0, 0.0001, 0.00001, 0.00009999995,
        0.000099999949, 0.00012345678, 9.9999949e-5, 9.999995e-5, 1e-5, 1e15, 1e16, 1e22, 1e23}) {
    ExpectStreamText(number);
  }
}

// A double exactly halfway between two numbers of six digits is rounded to the even one.
TEST(NumberText, Ties) {
  EXPECT_EQ(Format(1234565.0), "1.23456e+06");
  EXPECT_EQ(Format(1234575.0), "1.23458e+06");
  EXPECT_EQ(Format(100000.5), "100000");
  EXPECT_EQ(Format(100001.5), "100002");
  EXPECT_EQ(Format(0.5000005), StreamText(0.5000005));  // its double is not exactly halfway
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const double tie = static_cast<double>(random() % 900000 + 100000) + 0.5;
    const double number = std::ldexp(tie, static_cast<int>(random() % 30) - 15);
    ExpectStreamText(number);
    ExpectStreamText(std::nextafter(number, 0.0));
    ExpectStreamText(std::nextafter(number, Infinity));
  }
  for (int power = 1; power <= 22; ++power) {  // halves of large units are whole numbers
    const double unit = std::pow(10.0, power);
    for (const int digits : {100000, 123456, 123457, 999999, 444444}) {
      for (const double number : {(digits + 0.5) * unit, digits * unit + 0.5 * unit}) {
        ExpectStreamText(number);
        ExpectStreamText(std::nextafter(number, 0.0));
        ExpectStreamText(std::nextafter(number, Infinity));
      }
    }
  }
}

TEST(NumberText, NeighboursOfPowersOfTen) {
  for (int power = -323; power <= 307; ++power) {
    const double number = std::strtod(("1e" + std::to_string(power)).c_str(), nullptr);
    for (const double share : {1.0, 0.9999994, 0.9999995, 0.9999996, 0.99999949999, 1.0000005}) {
      ExpectStreamText(number * share);
      ExpectStreamText(std::nextafter(number * share, 0.0));
      ExpectStreamText(std::nextafter(number * share, Infinity));
    }
  }
}

// The doubles around a half of the last digit, of every exponent: the nearest one lies about as
// close to the half as the quick conversion errs.
TEST(NumberText, NeighboursOfHalves) {
  std::mt19937_64 random(7);
  for (int power = -60; power <= 60; ++power) {
    for (int i = 0; i < 300; ++i) {
      const std::uint64_t digits = 100000 + random() % 900000;
      double number = std::stod(std::to_string(digits) + ".5e" + std::to_string(power));
      for (int step = 0; step < 3; ++step) number = std::nextafter(number, 0.0);
      for (int step = 0; step < 7; ++step) {
        ASSERT_EQ(Format(number), LibraryText(number)) << digits << ".5e" << power << ' ' << step;
        number = std::nextafter(number, Infinity);
      }
    }
  }
}

// Around every power of two, from the smallest to the largest double: the decimal exponent is found
// from the binary one.
TEST(NumberText, NeighboursOfPowersOfTwo) {
  for (int power = -1074; power <= 1023; ++power) {
    const double number = std::ldexp(1.0, power);
    for (const double near : {std::nextafter(number, 0.0), number, number * 1.75}) {
      EXPECT_EQ(Format(near), LibraryText(near)) << power;
    }
  }
}

struct KnownText {
  double number;
  const char* text;
};

// By hand. Where rounding depends on it, the doubles' exact values are 9.99999500000000018...,
// 0.50000049999999995..., 1.00000499999999995...e-10 and 20000049999999999672320.
TEST(NumberText, KnownTexts) {
  for (const KnownText& known : {KnownText{9.999995, "10"},
                                 {0.5000005, "0.5"},
                                 {1.000005e-10, "1e-10"},
                                 {2.000005e22, "2e+22"},
                                 {10025.25, "10025.2"},  // ties: to the even digit
                                 {10025.75, "10025.8"},
                                 {1000005.0, "1e+06"},
                                 {1000015.0, "1.00002e+06"},
                                 {120000.0, "120000"},
                                 {1200000.0, "1.2e+06"},
                                 {0.00012, "0.00012"},
                                 {0.000012, "1.2e-05"},
                                 {100.25, "100.25"},
                                 {-7.0, "-7"},
                                 {1e-39, "1e-39"},  // near the ends of the quick conversion
                                 {9.87654321e-40, "9.87654e-40"},
                                 {1e44, "1e+44"},
                                 {1.2345678e44, "1.23457e+44"}}) {
    EXPECT_EQ(Format(known.number), known.text);
  }
}

// The number at the end of 15 characters; and of both forms, nothing behind the room they ask for.
TEST(NumberText, ColumnsAreRightAlignedAndRoomIsKept) {
  constexpr char Untouched = '#';
  for (const double number :
       {0.0, -0.0, 7.0, -7.0, 1.5, -123456.0, 0.000123456, -0.000123456, 1.23456e-12, -1.23456e-300,
        std::numeric_limits<double>::max(), -Infinity, 1234565.0}) {
    const std::string text = LibraryText(number);
    for (const bool isColumn : {false, true}) {
      std::string room(NumberRoom + 8, Untouched);
      char* const end =
          isColumn ? WriteColumn(number, room.data()) : WriteNumber(number, room.data());
      const std::string expected = isColumn ? std::string(15 - text.size(), ' ') + text : text;
      EXPECT_EQ(std::string(room.data(), end), expected);
      EXPECT_EQ(room.substr(NumberRoom), std::string(8, Untouched));
    }
  }
}

TEST(NumberText, NumbersOfAllMagnitudes) {
  std::mt19937_64 random(4711);
  std::uniform_real_distribution<double> exponent(-20.0, 30.0), mantissa(-10.0, 10.0);
  for (int i = 0; i < 100000; ++i) {
    const double number = mantissa(random) * std::pow(10, exponent(random));
    ASSERT_EQ(Format(number), LibraryText(number));
  }
  for (int i = 0; i < 100000; ++i) {  // any double at all
    const std::uint64_t bits = random();
    double number = 0.0;
    std::memcpy(&number, &bits, sizeof number);
    if (!std::isnan(number)) {
      ASSERT_EQ(Format(number), LibraryText(number));
    }
  }
  std::uniform_int_distribution<int> power(-135, 150);
  std::uniform_real_distribution<double> significand(1.0, 2.0);
  for (int i = 0; i < 300000; ++i) {  // a little beyond the range that is rounded quickly
    const double number = std::ldexp(significand(random), power(random));
    ASSERT_EQ(Format(number), LibraryText(number));
  }
  for (int i = 0; i < 100000; ++i) {  // few digits, as people write them
    const auto digits = static_cast<double>(random() % 10000);
    const double number = digits / std::pow(10, static_cast<int>(random() % 12));
    ASSERT_EQ(Format(number), LibraryText(number));
  }
}

TEST(NumberText, ExtremeNumbers) {
  using Limits = std::numeric_limits<double>;
  for (const double number : {Limits::denorm_min(), Limits::min(), Limits::max(), Infinity, 1e-16,
                              9.99999e-17, 1e27, 1.00001e27}) {
    ExpectStreamText(number);
  }
  // The ends of the range that is rounded without the library.
  for (const double end : {0x1p-129, 0x1p146}) {
    for (const double number : {std::nextafter(end, 0.0), end, std::nextafter(end, Infinity)}) {
      ExpectStreamText(number);
    }
  }
}

// As a stream writes them on Linux; elsewhere a stream may drop the sign.
TEST(NumberText, NaNsShowTheirSign) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(Format(std::copysign(nan, 1.0)), "nan");
  EXPECT_EQ(Format(std::copysign(nan, -1.0)), "-nan");
}

TEST(NumberText, Integers) {
  NumberBuffer buffer;
  EXPECT_EQ(FormatNumber(std::int64_t{0}, buffer), "0");
  EXPECT_EQ(FormatNumber(std::numeric_limits<std::int64_t>::min(), buffer), "-9223372036854775808");
}

}  // namespace
}  // namespace korvex
