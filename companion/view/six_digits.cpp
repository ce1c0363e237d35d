#include "view/six_digits.h"

#include <cmath>
#include <string_view>

#include "base/number_text.h"
#include "base/six_digits.h"

namespace kvx {

namespace {

constexpr std::int32_t Digits = korvex::SignificantDigits;

// "1.5", "-2.34568e-07", without a point or an exponent where it has none.
SixDigits ReadDigits(std::string_view text) {
  SixDigits read;
  std::int32_t count = 0, behindPoint = 0, written = 0;
  bool isBehind = false;
  std::size_t at = text[0] == '-' ? 1 : 0;
  for (; at < text.size() && text[at] != 'e'; ++at) {
    if (text[at] == '.') {
      isBehind = true;
      continue;
    }
    if (isBehind) ++behindPoint;
    read.digits = 10 * read.digits + (text[at] - '0');
    if (read.digits > 0) ++count;
  }
  const bool isSmall = at + 1 < text.size() && text[at + 1] == '-';
  for (at += 2; at < text.size(); ++at) written = 10 * written + (text[at] - '0');
  read.exponent = (isSmall ? -written : written) - behindPoint;
  for (; count < Digits; ++count, --read.exponent) read.digits *= 10;
  if (text[0] == '-') read.digits = -read.digits;
  return read;
}

SixDigits RoundByText(double number) {
  korvex::NumberBuffer buffer;
  return ReadDigits(korvex::FormatNumber(number, buffer));
}

}  // namespace

SixDigits RoundToSixDigits(double number) {
  if (number == 0.0) return {};
  const std::uint32_t field = korvex::ExponentField(number);
  if (field < korvex::SmallestQuick || field > korvex::LargestQuick) return RoundByText(number);
  const korvex::Decimal decimal = korvex::RoundToSixDigits(std::fabs(number), field);
  if (decimal.digits == 0) return RoundByText(number);
  const auto exponent = static_cast<std::int32_t>(decimal.index) - korvex::LargestPower;
  return {number < 0.0 ? -decimal.digits : decimal.digits, exponent - (Digits - 1)};
}

}  // namespace kvx
