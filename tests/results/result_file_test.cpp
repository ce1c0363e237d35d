// The text of result files: every item as a stream would write it, columns, blocks.
#include "results/result_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <sstream>

#include "support/temp_folder.h"

namespace korvex {
namespace {

// A file of `lines` in a folder of its own, closed.
std::string WriteToText(const std::function<void(ResultFile&)>& write) {
  const test::WorkingFolder folder;
  ResultFile file;
  OpenResultFile("result.txt", "", file);
  write(file);
  CloseResultFile(file);
  return test::ReadFile("result.txt");
}

std::string StreamText(double number) {
  std::ostringstream stream;
  stream << number;
  return stream.str();
}

// Finite numbers of all magnitudes, and those next to a change of notation or to a tie.
TEST(ResultFile, NumbersAreThoseOfAStream) {
  std::vector<double> numbers{0.0,
                              -0.0,
                              1.0,
                              -1.0,
                              0.1,
                              100000.0,
                              999999.0,
                              999999.5,
                              999999.4999,
                              1e6,
                              1234565.0,
                              1234575.0,
                              0.0001,
                              0.00001,
                              0.00009999995,
                              0.000099999949,
                              0.5,
                              2.5,
                              1.000005,
                              1.0000050000000001,
                              123456.5,
                              123457.5,
                              1e22,
                              1e23,
                              5e-324,
                              std::numeric_limits<double>::min(),
                              std::numeric_limits<double>::max(),
                              std::numeric_limits<double>::lowest(),
                              std::numeric_limits<double>::infinity(),
                              -std::numeric_limits<double>::infinity()};
  std::mt19937_64 random(4711);
  std::uniform_real_distribution<double> exponent(-20.0, 20.0), digit(-10.0, 10.0);
  for (int i = 0; i < 20000; ++i) numbers.push_back(digit(random) * std::pow(10, exponent(random)));
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();  // any double at all
    double number = 0.0;
    std::memcpy(&number, &bits, sizeof number);
    if (!std::isnan(number)) numbers.push_back(number);
  }
  for (int i = 0; i < 20000; ++i) {  // halfway between two numbers of six digits
    numbers.push_back((static_cast<double>(random() % 900000 + 100000) + 0.5) *
                      std::ldexp(1.0, static_cast<int>(random() % 8)));
  }
  const std::string text = WriteToText([&](ResultFile& file) {
    for (const double number : numbers) AddLine(file, number);
  });
  std::string expected;
  for (const double number : numbers) expected += StreamText(number) + "\n";
  EXPECT_TRUE(text == expected);  // not printed: it is long
}

// A stream on Linux, too; elsewhere a stream may drop the sign.
TEST(ResultFile, NaNsShowTheirSign) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(
      WriteToText([&](ResultFile& file) { AddLine(file, nan, ' ', std::copysign(nan, -1.0)); }),
      "nan -nan\n");
}

TEST(ResultFile, Integers) {
  EXPECT_EQ(WriteToText([](ResultFile& file) {
              AddLine(file, std::int32_t{0}, ',', std::numeric_limits<std::int32_t>::min(), ',',
                      std::numeric_limits<std::int64_t>::max());
            }),
            "0,-2147483648,9223372036854775807\n");
}

TEST(ResultFile, ColumnsAreFifteenWideAndRightAligned) {
  EXPECT_EQ(WriteToText([](ResultFile& file) {
              AddTitles(file, {"Node", "dx", "a title of more than fifteen"});
              AddNodeColumn(file, 7);
              AddColumn(file, -1.23456789e-300);
              AddColumn(file, 0.5);
              AddLine(file);
            }),
            "           Node             dxa title of more than fifteen\n"
            "             7:  -1.23457e-300            0.5\n");
}

TEST(ResultFile, ManyBlocksFollowEachOther) {
  std::string expected;
  for (int i = 0; i < 100000; ++i) expected += "line " + std::to_string(i) + "\n";
  EXPECT_TRUE(WriteToText([](ResultFile& file) {
                for (std::int32_t i = 0; i < 100000; ++i) AddLine(file, "line ", i);
              }) == expected);
}

}  // namespace
}  // namespace korvex
