// A number is digits x 10^(exponent - 5) with a whole number of six digits, the rounded value of
//   scaled = value x 10^(5 - exponent), between 100000 and 1000000.
// The power of ten and the product are each rounded to the nearest double, with relative errors of
// at most 2^-53. As scaled is below 2^20, it is wrong by less than 2^20 (2^-53 + 2^-53 + 2^-106) <
// 2^-31. Where it lies farther than that from a half, it is rounded as the exact product would be.
// Almost all others are ties of numbers that people write, such as 10025.25; exact_arithmetic.h
// decides them. The thought is that of Gay (1990), Correctly rounded binary-decimal and
// decimal-binary conversions.
//
// The text is then made without a branch: its characters are bytes of one 64-bit word, and what
// depends on the exponent stands in a table.
#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "base/exact_arithmetic.h"

namespace korvex {

namespace {

constexpr std::int32_t SignificantDigits = 6;

// 10^-45 to 10^45. Those from 10^0 to 10^22 are exact.
constexpr std::int32_t LargestPower = 45, LargestExactPower = 22;
constexpr std::array<double, 2 * LargestPower + 1> PowersOfTen{
    1e-45, 1e-44, 1e-43, 1e-42, 1e-41, 1e-40, 1e-39, 1e-38, 1e-37, 1e-36, 1e-35, 1e-34, 1e-33,
    1e-32, 1e-31, 1e-30, 1e-29, 1e-28, 1e-27, 1e-26, 1e-25, 1e-24, 1e-23, 1e-22, 1e-21, 1e-20,
    1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9,  1e-8,  1e-7,
    1e-6,  1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,
    1e7,   1e8,   1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,  1e16,  1e17,  1e18,  1e19,
    1e20,  1e21,  1e22,  1e23,  1e24,  1e25,  1e26,  1e27,  1e28,  1e29,  1e30,  1e31,  1e32,
    1e33,  1e34,  1e35,  1e36,  1e37,  1e38,  1e39,  1e40,  1e41,  1e42,  1e43,  1e44,  1e45};

double PowerOfTen(std::int32_t k) {
  return PowersOfTen[static_cast<std::size_t>(LargestPower + k)];
}

// Between them 10^(5 - exponent) and 10^(exponent + 1) are in the table.
constexpr double SmallestQuick = 1e-39, LargestQuick = 1e44;

// How far `scaled` may be wrong, see above.
constexpr double ScaledError = 0x1p-31;

// digits x 10^(exponent - 5), with 100000 <= digits <= 999999, or digits = 0: not known.
struct Decimal {
  std::int32_t digits;
  std::int32_t exponent;
};

std::uint64_t BitsOf(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

// Returns the decimal exponent of a value between SmallestQuick and LargestQuick. Values that lie
// below a power of ten by less than its rounding error count as that power: both exponents give its
// text.
std::int32_t FindExponent(double value) {
  constexpr std::int32_t ExponentBias = 1023, MantissaBits = 52;
  const auto binary = static_cast<std::int32_t>(BitsOf(value) >> MantissaBits) - ExponentBias;
  // log10(2) = 78913 / 2^18 to six digits. The sum is positive: it can be shifted.
  constexpr std::int32_t LogOfTwo = 78913, LogBits = 18;
  // The decimal exponent of 2^binary: that of the value, or one less.
  const std::int32_t least =
      ((binary * LogOfTwo + (LargestPower << LogBits)) >> LogBits) - LargestPower;
  return least + static_cast<std::int32_t>(value >= PowerOfTen(least + 1));
}

// Whether digits + rest, the rounded product of value and 10^k, has to be rounded up, by the exact
// product and, if that is a tie, to the even digit. 10^k is exact.
bool RoundsUp(double value, std::int32_t k, std::int32_t digits, double rest) {
  if (rest != 0.5) return rest > 0.5;  // the error is smaller than the last bit
  const double error = MultiplyExactly(value, PowerOfTen(k)).tail;
  return error > 0.0 || (error == 0.0 && digits % 2 != 0);
}

// value: between SmallestQuick and LargestQuick. The digits are not known where it takes more than
// a product to round them.
Decimal RoundToSixDigits(double value) {
  const std::int32_t exponent = FindExponent(value);
  const std::int32_t k = SignificantDigits - 1 - exponent;
  const double scaled = value * PowerOfTen(k);
  auto digits = static_cast<std::int32_t>(scaled);
  const double rest = scaled - digits;  // exact
  bool isUp = rest > 0.5;
  if (std::fabs(rest - 0.5) < ScaledError) {
    if (k < 0 || k > LargestExactPower) return {0, 0};
    isUp = RoundsUp(value, k, digits, rest);
  }
  digits += static_cast<std::int32_t>(isUp);
  if (digits == 1000000) return {100000, exponent + 1};
  return {digits, exponent};
}

// Three digits as text: the characters in the lower three bytes of a word, the first one in the
// lowest, and in the highest byte their number without the zeros at the end.
constexpr std::int32_t TripleBits = 24;
constexpr std::uint32_t CharacterBits = 8;

constexpr std::array<std::uint32_t, 1000> MakeTriples() {
  std::array<std::uint32_t, 1000> triples{};
  for (std::uint32_t i = 0; i < triples.size(); ++i) {
    const std::uint32_t a = i / 100, b = i / 10 % 10, c = i % 10;
    const std::uint32_t count = c != 0 ? 3 : b != 0 ? 2 : a != 0 ? 1 : 0;
    triples[i] = ('0' + a) | ('0' + b) << CharacterBits | ('0' + c) << 2 * CharacterBits |
                 count << TripleBits;
  }
  return triples;
}

constexpr std::array<std::uint32_t, 1000> Triples = MakeTriples();

// How a number of a certain exponent is written: a prefix, digits with the point among them, a
// suffix.
struct Layout {
  std::array<char, 8> prefix{'0', '.', '0', '0', '0', '0', '0', '0'};  // `start` of them
  std::array<char, 4> suffix{'e', '+', '0', '0'};                      // `suffixSize` of them
  std::uint8_t start = 0;
  std::uint8_t suffixSize = 0;
  std::uint8_t whole = SignificantDigits;  // digits before the point
  std::uint8_t kept = 1;                   // digits that are written even if they are zero
  std::uint64_t wholeMask = 0;             // the bits of the digits before the point
  std::uint64_t point = 0;                 // the bits of the point
};

constexpr Layout MakeLayout(std::int32_t exponent) {
  Layout layout;
  if (exponent >= 0 && exponent < SignificantDigits) {  // 123.456
    layout.whole = layout.kept = static_cast<std::uint8_t>(exponent + 1);
  } else if (exponent < 0 && exponent >= -4) {  // 0.00123456; all digits after the prefix's point
    layout.start = static_cast<std::uint8_t>(1 - exponent);
  } else {  // 1.23456e-12
    const std::int32_t size = exponent < 0 ? -exponent : exponent;
    layout.suffix[1] = exponent < 0 ? '-' : '+';
    layout.suffix[2] = static_cast<char>('0' + size / 10);
    layout.suffix[3] = static_cast<char>('0' + size % 10);
    layout.suffixSize = 4;
    layout.whole = 1;
  }
  const std::uint32_t pointAt = CharacterBits * layout.whole;
  layout.wholeMask = (std::uint64_t{1} << pointAt) - 1;
  layout.point = std::uint64_t{'.'} << pointAt;
  return layout;
}

// Of the exponents -LargestPower .. LargestPower.
constexpr std::array<Layout, 2 * LargestPower + 1> MakeLayouts() {
  std::array<Layout, 2 * LargestPower + 1> layouts{};
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    layouts[i] = MakeLayout(static_cast<std::int32_t>(i) - LargestPower);
  }
  return layouts;
}

constexpr std::array<Layout, 2 * LargestPower + 1> Layouts = MakeLayouts();

// Writes the bytes of a word, the lowest first. Compilers make one store of it.
void WriteWord(std::uint64_t word, char* out) {
  for (std::size_t i = 0; i < sizeof word; ++i) {
    out[i] = static_cast<char>(word >> CharacterBits * i & 0xFFU);
  }
}

// A column is filled with spaces, and one character more, in one store.
constexpr std::array<char, ColumnWidth + 1> Spaces{' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ',
                                                   ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};

// Returns where a text of `size` characters begins that ends with its column, or begins at `out`.
// The spaces before it are written.
char* FindBegin(bool isColumn, std::size_t size, char* out) {
  if (!isColumn) return out;
  std::memcpy(out, Spaces.data(), Spaces.size());
  return out + (ColumnWidth - size);
}

char* WriteDecimal(bool isNegative, const Decimal& decimal, bool isColumn, char* out) {
  const Layout& layout = Layouts[static_cast<std::size_t>(LargestPower + decimal.exponent)];
  const auto digits = static_cast<std::uint32_t>(decimal.digits);
  const std::uint32_t first = Triples[digits / 1000], last = Triples[digits % 1000];
  const std::uint32_t count =
      last >> TripleBits != 0 ? 3 + (last >> TripleBits) : first >> TripleBits;

  constexpr std::uint64_t TripleMask = (std::uint64_t{1} << TripleBits) - 1;
  const std::uint64_t characters = (first & TripleMask) | (last & TripleMask) << TripleBits;
  const std::uint64_t whole = characters & layout.wholeMask;
  const std::uint64_t text = whole | layout.point | (characters ^ whole) << CharacterBits;

  const std::size_t signSize = isNegative ? 1 : 0, pointSize = count > layout.whole ? 1 : 0;
  const std::size_t head = signSize + layout.start;
  const std::size_t body = head + std::max<std::size_t>(count, layout.kept) + pointSize;
  char* const begin = FindBegin(isColumn, body + layout.suffixSize, out);
  *begin = '-';
  std::memcpy(begin + signSize, layout.prefix.data(), layout.prefix.size());
  WriteWord(text, begin + head);
  std::memcpy(begin + body, layout.suffix.data(), layout.suffix.size());
  return begin + body + layout.suffixSize;
}

// Zeros, and what needs the library.
char* WriteOther(double number, bool isColumn, char* out) {
  std::array<char, NumberRoom> text{};
  char* end = text.data();
  if (std::signbit(number)) *end++ = '-';
  const double value = std::fabs(number);
  if (value == 0.0) {
    *end++ = '0';
  } else {
    end = std::to_chars(end, text.data() + text.size(), value, std::chars_format::general,
                        SignificantDigits)
              .ptr;
  }
  const auto size = static_cast<std::size_t>(end - text.data());
  return std::copy_n(text.data(), size, FindBegin(isColumn, size, out));
}

char* WriteAt(double number, bool isColumn, char* out) {
  const double value = std::fabs(number);
  if (!(value >= SmallestQuick && value <= LargestQuick)) return WriteOther(number, isColumn, out);
  const Decimal decimal = RoundToSixDigits(value);
  if (decimal.digits == 0) return WriteOther(number, isColumn, out);
  return WriteDecimal(std::signbit(number), decimal, isColumn, out);
}

}  // namespace

char* WriteNumber(double number, char* out) { return WriteAt(number, false, out); }

char* WriteColumn(double number, char* out) { return WriteAt(number, true, out); }

char* WriteNumber(std::int64_t number, char* out) {
  return std::to_chars(out, out + NumberRoom, number).ptr;
}

}  // namespace korvex
