// Six digits from one product: value x 10^(5 - exponent) lies between 100000 and 1000000. The sign
// of its rounding error decides where the product alone would be a tie.
#include "base/number_text.h"

#include <charconv>
#include <cmath>

#include "base/exact_arithmetic.h"

namespace korvex {

namespace {

constexpr int SignificantDigits = 6;

// 10^0 to 10^22: the powers of ten that are exact doubles.
constexpr std::array<double, 23> PowersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr double SmallestDirect = 1e-16, LargestDirect = 1e27;  // one decade within the powers

// digits x 10^(exponent - 5), with 100000 <= digits <= 999999.
struct Decimal {
  std::int32_t digits;
  std::int32_t exponent;
};

// Returns value x 10^k: the rounded product and its error. For k < 0 only the sign of the error is
// exact; more is not needed.
DoubleDouble ScaleByPowerOfTen(double value, std::int32_t k) {
  if (k >= 0) return MultiplyExactly(value, PowersOfTen[static_cast<std::size_t>(k)]);
  const double power = PowersOfTen[static_cast<std::size_t>(-k)];
  const double quotient = value / power;
  const DoubleDouble product = MultiplyExactly(quotient, power);
  return {quotient, (value - product.head) - product.tail};
}

// value: between SmallestDirect and LargestDirect.
Decimal RoundToSixDigits(double value) {
  int binaryExponent = 0;
  std::frexp(value, &binaryExponent);
  constexpr double LogOfTwo = 0.30102999566398120;  // decimal
  // The decimal exponent, or one more.
  auto exponent = static_cast<std::int32_t>(std::floor(binaryExponent * LogOfTwo));
  DoubleDouble scaled = ScaleByPowerOfTen(value, SignificantDigits - 1 - exponent);
  if (scaled.head < 1e5 || (scaled.head == 1e5 && scaled.tail < 0.0)) {
    --exponent;
    scaled = ScaleByPowerOfTen(value, SignificantDigits - 1 - exponent);
  }
  auto digits = static_cast<std::int32_t>(scaled.head);
  const double rest = scaled.head - digits;  // exact; the tail counts only where it is a half
  const bool isAboveHalf = rest > 0.5 || (rest == 0.5 && scaled.tail > 0.0);
  const bool isTie = rest == 0.5 && scaled.tail == 0.0;
  if (isAboveHalf || (isTie && digits % 2 != 0)) ++digits;
  if (digits == 1000000) return {100000, exponent + 1};
  return {digits, exponent};
}

// Writes the six digits without trailing zeros, but at least `kept` digits. Returns their number.
int WriteDigits(std::int32_t digits, int kept, char* out) {
  for (int i = SignificantDigits - 1; i >= 0; --i) {
    out[i] = static_cast<char>('0' + digits % 10);
    digits /= 10;
  }
  int count = SignificantDigits;
  while (count > kept && out[count - 1] == '0') --count;
  return count;
}

// Writes the notation "d.ddddde+xx"; here the exponent has two digits. Returns the end.
char* WriteScientific(const Decimal& decimal, char* out) {
  char digits[SignificantDigits];
  const int count = WriteDigits(decimal.digits, 1, digits);
  *out++ = digits[0];
  if (count > 1) *out++ = '.';
  for (int i = 1; i < count; ++i) *out++ = digits[i];
  const std::int32_t size = std::abs(decimal.exponent);
  *out++ = 'e';
  *out++ = decimal.exponent < 0 ? '-' : '+';
  *out++ = static_cast<char>('0' + size / 10);
  *out++ = static_cast<char>('0' + size % 10);
  return out;
}

// Writes the notation without exponent, for exponents from -4 to 5. Returns the end.
char* WriteFixed(const Decimal& decimal, char* out) {
  char digits[SignificantDigits];
  const int count = WriteDigits(decimal.digits, decimal.exponent + 1, digits);
  if (decimal.exponent < 0) {
    *out++ = '0';
    *out++ = '.';
    for (std::int32_t zeros = -1; zeros > decimal.exponent; --zeros) *out++ = '0';
  }
  for (int i = 0; i < count; ++i) {
    if (i > 0 && i == decimal.exponent + 1) *out++ = '.';
    *out++ = digits[i];
  }
  return out;
}

}  // namespace

std::string_view FormatNumber(double number, NumberBuffer& buffer) {
  char* end = buffer.data();
  const double value = std::fabs(number);
  if (std::signbit(number)) *end++ = '-';
  if (value == 0.0) {
    *end++ = '0';
  } else if (value >= SmallestDirect && value <= LargestDirect) {
    const Decimal decimal = RoundToSixDigits(value);
    const bool isFixed = decimal.exponent >= -4 && decimal.exponent < SignificantDigits;
    end = isFixed ? WriteFixed(decimal, end) : WriteScientific(decimal, end);
  } else {
    end = std::to_chars(end, buffer.data() + buffer.size(), value, std::chars_format::general,
                        SignificantDigits)
              .ptr;
  }
  return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

std::string_view FormatNumber(std::int64_t number, NumberBuffer& buffer) {
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  return {buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data())};
}

}  // namespace korvex
