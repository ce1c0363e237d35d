#include "support/page_columns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "base/number_text.h"
#include "support/temp_folder.h"

namespace kvx::test {

namespace {

const PageColumn* FindColumn(const PageBlock& block, const std::string& name) {
  for (const PageColumn& column : block.columns) {
    if (column.name == name) return &column;
  }
  return nullptr;
}

// Where number k of the block stands among the values, row by row.
std::size_t PlaceOf(const PageColumn& column, std::size_t k) {
  const std::size_t rows = column.count / column.width;
  return k % rows * column.width + k / rows;
}

// The bits of number k, from the lowest byte.
std::uint64_t ReadBits(const PageBlock& block, const PageColumn& column, std::size_t bytes,
                       std::size_t k) {
  std::uint64_t bits = 0;
  for (std::size_t plane = 0; plane < bytes; ++plane) {
    const std::size_t at = column.at + plane * column.count + k;
    const auto byte = static_cast<unsigned char>(block.bytes.at(at));
    bits |= static_cast<std::uint64_t>(byte) << (8 * plane);
  }
  return bits;
}

double DecodeDecimal(std::uint32_t bits) {
  const auto digits = static_cast<std::int32_t>(bits & 0xFFFFFFU) - 8388608;  // 2^23
  const auto exponent = static_cast<int>(bits >> 24U) - 64;
  constexpr double Infinite = std::numeric_limits<double>::infinity();
  if (exponent == 63) {
    return digits == 1 ? Infinite : digits == 2 ? -Infinite : std::nan("");
  }
  // strtod rounds the decimal number once.
  return std::strtod((std::to_string(digits) + 'e' + std::to_string(exponent)).c_str(), nullptr);
}

// Sums of differences 0, -1, 1, -2, 2 ... over a power of ten.
std::vector<double> ReadFixed(const PageBlock& block, const PageColumn& column) {
  std::vector<double> values(column.count);
  std::int64_t sum = 0;
  for (std::size_t k = 0; k < column.count; ++k) {
    const auto bits = static_cast<std::int64_t>(ReadBits(block, column, 6, k));
    sum += bits % 2 == 0 ? bits / 2 : -(bits + 1) / 2;
    values[PlaceOf(column, k)] = static_cast<double>(sum) / std::pow(10.0, column.digits);
  }
  return values;
}

}  // namespace

bool HasColumn(const PageBlock& block, const std::string& name) {
  return FindColumn(block, name) != nullptr;
}

std::vector<std::int32_t> ReadIntegers(const PageBlock& block, const std::string& name) {
  const PageColumn* column = FindColumn(block, name);
  if (column == nullptr) return {};
  std::vector<std::int32_t> values(column->count);
  EXPECT_STREQ(column->encoding, "integers") << name;
  std::uint32_t value = 0;
  for (std::size_t k = 0; k < column->count; ++k) {
    value += static_cast<std::uint32_t>(ReadBits(block, *column, 4, k));
    values[PlaceOf(*column, k)] = static_cast<std::int32_t>(value);
  }
  return values;
}

std::vector<double> ReadDecimals(const PageBlock& block, const std::string& name) {
  const PageColumn* column = FindColumn(block, name);
  if (column == nullptr) return {};
  std::vector<double> values(column->count);
  EXPECT_STREQ(column->encoding, "decimals") << name;
  for (std::size_t k = 0; k < column->count; ++k) {
    const auto bits = static_cast<std::uint32_t>(ReadBits(block, *column, 4, k));
    values[PlaceOf(*column, k)] = static_cast<double>(static_cast<float>(DecodeDecimal(bits)));
  }
  return values;
}

std::vector<double> ReadDoubles(const PageBlock& block, const std::string& name) {
  const PageColumn* column = FindColumn(block, name);
  if (column == nullptr) return {};
  std::vector<double> values(column->count);
  if (column->encoding == std::string("fixed")) return ReadFixed(block, *column);
  EXPECT_STREQ(column->encoding, "doubles") << name;
  for (std::size_t k = 0; k < column->count; ++k) {
    const std::uint64_t bits = ReadBits(block, *column, 8, k);
    std::memcpy(&values[PlaceOf(*column, k)], &bits, sizeof bits);
  }
  return values;
}

std::string ShowNumber(double number) {
  if (number == 0.0) return "0";
  if (std::isnan(number)) return "nan";
  korvex::NumberBuffer buffer;
  return std::string(korvex::FormatNumber(number, buffer));
}

std::vector<std::string> ReadWords(const std::filesystem::path& file) {
  const std::string text = korvex::test::ReadFile(file);
  constexpr const char* Between = " \n(),=:";
  std::vector<std::string> words;
  for (std::size_t at = text.find_first_not_of(Between); at != std::string::npos;) {
    const std::size_t end = std::min(text.find_first_of(Between, at), text.size());
    std::string word = text.substr(at, end - at);
    if (word == "-0" || word == "-nan") word.erase(0, 1);
    words.push_back(std::move(word));
    at = text.find_first_not_of(Between, end);
  }
  return words;
}

}  // namespace kvx::test
