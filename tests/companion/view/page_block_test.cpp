// Blocks of the page: each number comes back as it was, decimals with the six digits of result
// files, and the bytes are gzip in base64 without a time.
#include "view/page_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "base/number_text.h"
#include "support/page_columns.h"
#include "support/page_file.h"

namespace kvx::test {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

// Number k of the only column: digits and exponent as the page's script takes them apart.
struct PackedDecimal {
  std::int32_t digits = 0, exponent = 0;
};
PackedDecimal Unpack(const PageBlock& block, std::size_t k) {
  const std::size_t count = block.columns[0].count;
  const auto byte = [&](std::size_t plane) {
    return static_cast<std::int32_t>(static_cast<unsigned char>(block.bytes.at(plane * count + k)));
  };
  return {byte(0) + 256 * byte(1) + 65536 * byte(2) - 8388608, byte(3) - 64};
}

PackedDecimal Pack(double number) {
  PageBlock block;
  AddDecimals("x", {number}, block);
  return Unpack(block, 0);
}

void ExpectPacked(double number, std::int32_t digits, std::int32_t exponent) {
  EXPECT_EQ(Pack(number).digits, digits) << number;
  EXPECT_EQ(Pack(number).exponent, exponent) << number;
}

TEST(KvxPageBlock, IntegersAreDifferencesInPlanes) {
  PageBlock block;
  AddIntegers("x", {1, 258, 257}, block);
  // 1, 257 and -1 from the lowest byte on.
  EXPECT_EQ(block.bytes, std::string("\x01\x01\xFF\x00\x01\xFF\x00\x00\xFF\x00\x00\xFF", 12));
}

TEST(KvxPageBlock, IntegersComeBack) {
  const std::vector<std::int32_t> values{0,
                                         -1,
                                         std::numeric_limits<std::int32_t>::max(),
                                         std::numeric_limits<std::int32_t>::min(),
                                         7,
                                         7,
                                         -300000};
  PageBlock block;
  AddIntegers("x", values, block);
  EXPECT_EQ(ReadIntegers(block, "x"), values);
}

TEST(KvxPageBlock, DoublesComeBackBitByBit) {
  const std::vector<double> values{0.0, -0.0, 1.0 / 3.0, std::nan("1"), -Infinity, 5e-324, 1e308};
  PageBlock block;
  AddDoubles("x", values, block);
  const std::vector<double> found = ReadDoubles(block, "x");
  ASSERT_EQ(found.size(), values.size());
  EXPECT_EQ(std::memcmp(found.data(), values.data(), sizeof(double) * values.size()), 0);
}

// Whether AddDoubles finds so many decimal places; -1: it writes 64 bits.
void ExpectPlaces(const std::vector<double>& values, std::int32_t places) {
  PageBlock block;
  AddDoubles("x", values, block);
  EXPECT_STREQ(block.columns[0].encoding, places < 0 ? "doubles" : "fixed") << values[0];
  EXPECT_EQ(block.columns[0].digits, std::max(places, 0)) << values[0];
  const std::vector<double> found = ReadDoubles(block, "x");
  ASSERT_EQ(found.size(), values.size());
  EXPECT_EQ(std::memcmp(found.data(), values.data(), sizeof(double) * values.size()), 0);
}

TEST(KvxPageBlock, DoublesOfFewDecimalPlacesAreFixed) {
  ExpectPlaces({3.0, -7.0, 0.0}, 0);
  ExpectPlaces({1.5, 2.25, 1e10}, 2);
  ExpectPlaces({0.1, -0.2, 0.3, 12345.678901}, 6);
  ExpectPlaces({1e-12}, 12);
  ExpectPlaces({1.0 - 0x1p46, 0x1p46 - 1.0, 1.0 - 0x1p46}, 0);  // the largest differences
}

TEST(KvxPageBlock, DoublesThatDoNotAllowItAreNotFixed) {
  ExpectPlaces({1.0 / 3.0}, -1);
  ExpectPlaces({0.1, 0.1 + 0x1p-56}, -1);  // the next double
  ExpectPlaces({1.0, -0.0}, -1);
  ExpectPlaces({1.0, std::nan("")}, -1);
  ExpectPlaces({Infinity, 1.0}, -1);
  ExpectPlaces({1e-13}, -1);
  ExpectPlaces({0x1p46}, -1);
  ExpectPlaces({1e13, 0.001}, -1);  // each of them alone would do
}

// Coordinates as meshers write them: all bits come back.
TEST(KvxPageBlock, FixedDoublesComeBackBitByBit) {
  std::mt19937_64 dice(7);
  for (std::int32_t places = 0; places <= 8; ++places) {
    std::vector<double> values;
    for (int k = 0; k < 3000; ++k) {
      // strtod reads them as the solver's reader does: the nearest double.
      const auto whole = static_cast<std::int64_t>(dice() % 1000000) - 500000;
      std::string text = std::to_string(whole) + '.' + std::to_string(dice() % 100000000);
      values.push_back(std::strtod(
          text.substr(0, text.find('.') + 1 + static_cast<std::size_t>(places)).c_str(), nullptr));
      values.back() += 0.0;  // -0 becomes 0
    }
    ExpectPlaces(values, places);
  }
}

// 1, 3, 5 and 2, 4, 6 stand side by side; differences of neighbours run on from 5 to 2.
TEST(KvxPageBlock, RowsAreTakenApart) {
  PageBlock block;
  AddIntegers("x", {1, 2, 3, 4, 5, 6}, block, 2);
  EXPECT_EQ(block.columns[0].width, 2U);
  EXPECT_EQ(block.bytes.substr(0, 6), std::string("\x01\x02\x02\xFD\x02\x02", 6));
  EXPECT_EQ(ReadIntegers(block, "x"), (std::vector<std::int32_t>{1, 2, 3, 4, 5, 6}));
  const std::vector<double> values{0.5, 1.0 / 3.0, 2.5, 4.0, 5.0, 6.0};
  AddDoubles("doubles", values, block, 3);
  EXPECT_EQ(ReadDoubles(block, "doubles"), values);
  AddDoubles("fixed", {0.5, 0.25, 2.5, 4.0}, block, 2);
  EXPECT_EQ(ReadDoubles(block, "fixed"), (std::vector<double>{0.5, 0.25, 2.5, 4.0}));
  AddDecimals("decimals", {0.5, 0.25, 2.5, 4.0}, block, 2);
  EXPECT_EQ(ReadDecimals(block, "decimals"), (std::vector<double>{0.5, 0.25, 2.5, 4.0}));
}

TEST(KvxPageBlock, DecimalsAreDigitsAndExponents) {
  ExpectPacked(1.0, 100000, -5);
  ExpectPacked(-0.001234567, -123457, -8);
  ExpectPacked(999999.5, 100000, 1);
  ExpectPacked(0.0, 0, 0);
  ExpectPacked(-0.0, 0, 0);
}

TEST(KvxPageBlock, DecimalsThatAreNoNumbersHaveMarks) {
  ExpectPacked(Infinity, 1, 63);
  ExpectPacked(-Infinity, 2, 63);
  ExpectPacked(std::nan(""), 3, 63);
  ExpectPacked(-std::nan(""), 3, 63);
}

TEST(KvxPageBlock, DecimalsEndAtTheirRange) {
  ExpectPacked(1e-59, 100000, -64);
  ExpectPacked(9.99999e-60, 0, 0);
  ExpectPacked(9.9999999e-60, 100000, -64);  // its six digits are those of 1e-59
  ExpectPacked(5e-324, 0, 0);
  ExpectPacked(-9.99999e67, -999999, 62);
  ExpectPacked(1e68, 1, 63);
  ExpectPacked(-9.999999e67, 2, 63);  // its six digits are those of -1e68
}

// What the page shows of a number is what a result file shows.
TEST(KvxPageBlock, DecimalsHaveTheDigitsOfResultFiles) {
  std::mt19937_64 dice(5);
  std::vector<double> values;
  for (int k = 0; k < 100000; ++k) {
    const double fraction = static_cast<double>(dice() >> 11U) * 0x1p-53 - 0.5;
    values.push_back(fraction * std::pow(10.0, static_cast<double>(dice() % 60) - 28.0));
  }
  PageBlock block;
  AddDecimals("x", values, block);
  const std::vector<double> found = ReadDecimals(block, "x");
  ASSERT_EQ(found.size(), values.size());
  for (std::size_t k = 0; k < values.size(); ++k) {
    EXPECT_EQ(ShowNumber(found[k]), ShowNumber(values[k]));
  }
}

TEST(KvxPageBlock, ColumnsStandOneBehindAnother) {
  PageBlock block;
  AddIntegers("none", {}, block);
  AddIntegers("one", {42}, block);
  AddDecimals("decimals", {1.5, -2.5}, block);
  AddDoubles("doubles", {1.0 / 3.0}, block);
  ASSERT_EQ(block.columns.size(), 4U);
  const std::vector<std::size_t> places{0, 0, 4, 12}, counts{0, 1, 2, 1};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(block.columns[k].at, places[k]);
    EXPECT_EQ(block.columns[k].count, counts[k]);
  }
  EXPECT_EQ(block.bytes.size(), 20U);
  EXPECT_TRUE(HasColumn(block, "none"));
  EXPECT_EQ(ReadIntegers(block, "one"), std::vector<std::int32_t>{42});
  EXPECT_EQ(ReadDecimals(block, "decimals"), (std::vector<double>{1.5, -2.5}));
  EXPECT_EQ(ReadDoubles(block, "doubles"), std::vector<double>{1.0 / 3.0});
}

// Of all lengths around a multiple of three, and longer than one piece of the packing.
TEST(KvxPageBlock, TextUnpacksToTheBytes) {
  std::mt19937 dice(6);
  for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 100U, 65535U, 300000U}) {
    PageBlock block;
    for (std::size_t k = 0; k < size; ++k) block.bytes += static_cast<char>(dice() & 0xFFU);
    const std::string text = EncodeBlock(block);
    EXPECT_EQ(Gunzip(DecodeBase64(text)), block.bytes);
    EXPECT_EQ(EncodeBlock(block), text);
  }
}

// RFC 1952, 2.3: magic, method 8, no flags, the time 0, then the system: 255 is none.
TEST(KvxPageBlock, PackedBytesTellNoTimeAndNoSystem) {
  PageBlock block;
  AddIntegers("x", {1, 2, 3}, block);
  const std::string packed = DecodeBase64(EncodeBlock(block));
  EXPECT_EQ(packed.substr(0, 8), std::string("\x1F\x8B\x08\x00\x00\x00\x00\x00", 8));
  EXPECT_EQ(packed[9], '\xFF');
}

}  // namespace
}  // namespace kvx::test
