// Numbers that six_digits.h rounds are written in a few whole words: their characters are bytes of
// one of 64 bits, and what depends on the exponent stands in a table.
#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "base/six_digits.h"

namespace korvex {

namespace {

// Six digits as text are bytes of a word, the first one in the lowest byte. The tables hold the
// upper and the lower three; the highest byte of the lower ones is the number of all digits without
// the zeros at the end, or 0 where the lower three are zeros.
constexpr std::uint32_t CharacterBits = 8, CountAt = 56;

constexpr std::uint64_t MakeCharacters(std::uint32_t number) {
  const std::uint32_t a = number / 100, b = number / 10 % 10, c = number % 10;
  return ('0' + a) | ('0' + b) << CharacterBits | ('0' + c) << 2 * CharacterBits;
}

// Of a number of three digits, without the zeros at the end.
constexpr std::uint32_t CountDigits(std::uint32_t number) {
  if (number % 10 != 0) return 3;
  if (number % 100 != 0) return 2;
  return number != 0 ? 1 : 0;
}

constexpr std::array<std::uint32_t, 1000> MakeUpperDigits() {
  std::array<std::uint32_t, 1000> digits{};
  for (std::uint32_t i = 0; i < digits.size(); ++i) {
    digits[i] = static_cast<std::uint32_t>(MakeCharacters(i));
  }
  return digits;
}

constexpr std::array<std::uint64_t, 1000> MakeLowerDigits() {
  std::array<std::uint64_t, 1000> digits{};
  for (std::uint32_t i = 0; i < digits.size(); ++i) {
    const std::uint64_t count = i == 0 ? 0 : 3 + CountDigits(i);
    digits[i] = MakeCharacters(i) << 3 * CharacterBits | count << CountAt;
  }
  return digits;
}

constexpr std::array<std::uint32_t, 1000> UpperDigits = MakeUpperDigits();
constexpr std::array<std::uint64_t, 1000> LowerDigits = MakeLowerDigits();

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
// Writes the spaces before it.
char* BeginText(bool isColumn, std::size_t size, char* out) {
  if (!isColumn) return out;
  std::memcpy(out, Spaces.data(), Spaces.size());
  return out + (ColumnWidth - size);
}

char* WriteDecimal(bool isNegative, const Decimal& decimal, bool isColumn, char* out) {
  const Layout& layout = Layouts[decimal.index];
  const auto digits = static_cast<std::uint32_t>(decimal.digits);
  const std::uint32_t upper = digits / 1000;
  const std::uint64_t characters = UpperDigits[upper] | LowerDigits[digits % 1000];
  auto count = static_cast<std::uint32_t>(characters >> CountAt);
  if (count == 0) count = CountDigits(upper);

  const std::uint64_t whole = characters & layout.wholeMask;  // the shift drops the count
  const std::uint64_t text = whole | layout.point | (characters ^ whole) << CharacterBits;

  const std::size_t signSize = isNegative ? 1 : 0, pointSize = count > layout.whole ? 1 : 0;
  const std::size_t head = signSize + layout.start;
  const std::size_t body = head + std::max<std::size_t>(count, layout.kept) + pointSize;
  char* const begin = BeginText(isColumn, body + layout.suffixSize, out);
  // Each store may write too many characters, also those of a sign, prefix or suffix that is not
  // there: the next one covers them, and the end is told. The last one that is changed lies before
  // out + 22 in a column, and out + NumberRoom has room for it.
  *begin = '-';
  std::memcpy(begin + signSize, layout.prefix.data(), layout.prefix.size());
  WriteWord(text, begin + head);
  std::memcpy(begin + body, layout.suffix.data(), layout.suffix.size());
  return begin + body + layout.suffixSize;
}

// Zeros, and what six_digits.h does not round.
char* WriteByLibrary(double number, bool isColumn, char* out) {
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
  return std::copy_n(text.data(), size, BeginText(isColumn, size, out));
}

char* WriteAligned(double number, bool isColumn, char* out) {
  const std::uint32_t field = ExponentField(number);
  if (field < SmallestQuick || field > LargestQuick) return WriteByLibrary(number, isColumn, out);
  const Decimal decimal = RoundToSixDigits(std::fabs(number), field);
  if (decimal.digits == 0) return WriteByLibrary(number, isColumn, out);
  return WriteDecimal(std::signbit(number), decimal, isColumn, out);
}

}  // namespace

char* WriteNumber(double number, char* out) { return WriteAligned(number, false, out); }

char* WriteColumn(double number, char* out) { return WriteAligned(number, true, out); }

char* WriteNumber(std::int64_t number, char* out) {
  return std::to_chars(out, out + NumberRoom, number).ptr;
}

}  // namespace korvex
