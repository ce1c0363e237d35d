// The six significant digits of a double, and its decimal exponent.
//
// A number is digits x 10^(exponent - 5) with a whole number of six digits, the rounded value of
//   scaled = value x 10^(5 - exponent), between 100000 and 1000000.
// The power of ten and the product are each rounded to the nearest double, with relative errors of
// at most 2^-53. As scaled is below 2^20, it is wrong by less than 2^20 (2^-53 + 2^-53 + 2^-106) <
// 2^-31. Where it lies farther than that from a half, it is rounded as the exact product would be.
// Almost all others are ties of numbers that people write, such as 10025.25: exact_arithmetic.h
// decides them from 1e-17 to a million, where the power of ten is exact, the library elsewhere. The
// thought is that of Gay (1990), Correctly rounded binary-decimal and decimal-binary conversions.
//
// All is inline: it is done for every number of a result file.
#pragma once

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "base/exact_arithmetic.h"
#include "base/powers_of_ten.h"

namespace korvex {

static_assert(FLT_EVAL_METHOD == 0, "each product is rounded to a double");

inline constexpr std::int32_t SignificantDigits = 6;

// The numbers from 2^-129 to below 2^146 are converted quickly, in decimals from 1.47e-39
// to 8.92e43: for them, 10^(5 - exponent) and 10^(exponent + 1) are in the table of powers. By the
// exponent field of a double, which has 11 bits and counts from -1023.
inline constexpr std::uint32_t ExponentBias = 1023, ExponentMask = 0x7FF, MantissaBits = 52;
inline constexpr std::uint32_t SmallestQuick = ExponentBias - 129,
                               LargestQuick = ExponentBias + 145;

// How far `scaled` may be wrong, see above.
inline constexpr double ScaledError = 0x1p-31;

// digits x 10^(exponent - 5), with 100000 <= digits <= 999999, or digits = 0: not known.
// index: exponent + LargestPower, the place of 10^exponent in the table.
struct Decimal {
  std::int32_t digits;
  std::uint32_t index;
};

inline std::uint64_t BitsOf(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

inline std::uint32_t ExponentField(double number) {
  return static_cast<std::uint32_t>(BitsOf(number) >> MantissaBits) & ExponentMask;
}

// Returns the index of a value's decimal exponent. value: positive; field: its exponent field,
// within the quick range. Values that lie below a power of ten by less than its rounding error
// count as that power: both exponents give its text.
inline std::uint32_t FindIndex(double value, std::uint32_t field) {
  // log10(2) = 78913 / 2^18 to six digits. The offset makes the field count from zero, and the
  // result from -LargestPower.
  constexpr std::uint32_t LogOfTwo = 78913, LogBits = 18;
  constexpr std::uint32_t Offset = ExponentBias * LogOfTwo - (LargestPower << LogBits);
  // That of the value, or one less.
  const std::uint32_t least = (field * LogOfTwo - Offset) >> LogBits;
  return least + static_cast<std::uint32_t>(value >= PowersOfTen[least + 1]);
}

// The power of ten k with scaled = value x 10^k.
inline std::int32_t ScalingPower(std::uint32_t index) {
  return SignificantDigits - 1 - (static_cast<std::int32_t>(index) - LargestPower);
}

inline Decimal MakeDecimal(std::int32_t digits, std::uint32_t index) {
  if (digits == 1000000) return {100000, index + 1};
  return {digits, index};
}

// The same as RoundToSixDigits where `scaled` lies close to a half: it may be a tie, which goes to
// the even digit. The digits stay unknown where the power of ten is not exact.
inline Decimal RoundWithCare(double value, std::uint32_t index, double scaled) {
  const std::int32_t k = ScalingPower(index);
  if (k < 0 || k > LargestExactPower) return {0, 0};
  const auto digits = static_cast<std::int32_t>(scaled);
  const double rest = scaled - digits;  // exact
  bool isUp = rest > 0.5;               // the error is smaller than the last bit
  if (rest == 0.5) {
    const double error = MultiplyExactly(value, PowerOfTen(k)).tail;
    isUp = error > 0.0 || (error == 0.0 && digits % 2 != 0);
  }
  return MakeDecimal(digits + static_cast<std::int32_t>(isUp), index);
}

// Returns the rounded value. value: positive; field: its exponent field, within the quick range.
inline Decimal RoundToSixDigits(double value, std::uint32_t field) {
  const std::uint32_t index = FindIndex(value, field);
  const double scaled = value * PowerOfTen(ScalingPower(index));
  constexpr double Half = 0.5;
  const auto digits = static_cast<std::int32_t>(scaled + Half);
  const double rest = scaled - digits;  // exact
  if (std::fabs(rest) > Half - ScaledError) return RoundWithCare(value, index, scaled);
  return MakeDecimal(digits, index);
}

}  // namespace korvex
