#include "view/six_digits.h"

#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

#include "base/number_text.h"

namespace kvx {

namespace {

constexpr std::int32_t Digits = 6;

// The powers of ten from 10^-70 to 10^70, each the nearest double.
constexpr std::int32_t LargestPower = 70;
constexpr std::size_t PowerCount = 2 * LargestPower + 1;
constexpr std::array<double, PowerCount> Powers{
    1e-70, 1e-69, 1e-68, 1e-67, 1e-66, 1e-65, 1e-64, 1e-63, 1e-62, 1e-61, 1e-60, 1e-59, 1e-58,
    1e-57, 1e-56, 1e-55, 1e-54, 1e-53, 1e-52, 1e-51, 1e-50, 1e-49, 1e-48, 1e-47, 1e-46, 1e-45,
    1e-44, 1e-43, 1e-42, 1e-41, 1e-40, 1e-39, 1e-38, 1e-37, 1e-36, 1e-35, 1e-34, 1e-33, 1e-32,
    1e-31, 1e-30, 1e-29, 1e-28, 1e-27, 1e-26, 1e-25, 1e-24, 1e-23, 1e-22, 1e-21, 1e-20, 1e-19,
    1e-18, 1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9,  1e-8,  1e-7,  1e-6,
    1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,   1e7,
    1e8,   1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,  1e16,  1e17,  1e18,  1e19,  1e20,
    1e21,  1e22,  1e23,  1e24,  1e25,  1e26,  1e27,  1e28,  1e29,  1e30,  1e31,  1e32,  1e33,
    1e34,  1e35,  1e36,  1e37,  1e38,  1e39,  1e40,  1e41,  1e42,  1e43,  1e44,  1e45,  1e46,
    1e47,  1e48,  1e49,  1e50,  1e51,  1e52,  1e53,  1e54,  1e55,  1e56,  1e57,  1e58,  1e59,
    1e60,  1e61,  1e62,  1e63,  1e64,  1e65,  1e66,  1e67,  1e68,  1e69,  1e70};

// Numbers whose scaling needs one of these powers.
constexpr double SmallestFast = 1e-60, LargestFast = 1e60;

// The scaled number is less than 1e6 and has the errors of its power and of the product: at most
// 2.2e-16 of it together, 2.3e-10. What is farther than this from where its rounding changes is
// rounded right.
constexpr double Doubt = 1e-9;

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

// The decimal exponent of a normal number, or one more.
std::int32_t GuessExponent(double size) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &size, sizeof bits);
  constexpr std::uint64_t FractionBits = 52;
  constexpr std::int32_t Bias = 1022;               // size < 2^(biased - Bias)
  constexpr double LogOfTwo = 0.30102999566398120;  // decimal
  const auto binary = static_cast<std::int32_t>(bits >> FractionBits) - Bias;
  return static_cast<std::int32_t>(std::floor(binary * LogOfTwo));
}

double Scale(double size, std::int32_t exponent) {
  return size * Powers[static_cast<std::size_t>(LargestPower + Digits - 1 - exponent)];
}

}  // namespace

SixDigits RoundToSixDigits(double number) {
  if (number == 0.0) return {};
  const double size = std::fabs(number);
  if (size < SmallestFast || size > LargestFast) return RoundByText(number);
  constexpr double Least = 1e5, Bound = 1e6;
  std::int32_t exponent = GuessExponent(size);
  double scaled = Scale(size, exponent);
  if (scaled < Least - Doubt) scaled = Scale(size, --exponent);
  if (scaled < Least + Doubt || scaled > Bound - 1.0) return RoundByText(number);
  const auto whole = static_cast<std::int32_t>(scaled);
  const double rest = scaled - whole;
  if (std::fabs(rest - 0.5) < Doubt) return RoundByText(number);
  const std::int32_t digits = rest > 0.5 ? whole + 1 : whole;
  return {number < 0.0 ? -digits : digits, exponent - (Digits - 1)};
}

}  // namespace kvx
