// As in scanf, the end of each number is found character by character, with one character of
// look-ahead. Then the text of the number is converted.
#include "deck/scan_text.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <system_error>

#include "base/powers_of_ten.h"
#include "report/check_memory.h"

namespace korvex {

namespace {

constexpr int EndOfText = -1;  // outside the byte values 0 .. 255

int PeekCharacter(const TextCursor& cursor) {
  if (cursor.position >= cursor.text.size()) return EndOfText;
  return static_cast<unsigned char>(cursor.text[cursor.position]);
}

// The classes of the "C" locale, spelled out for every byte value and for EndOfText.
bool IsSpace(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsDigit(int c) { return c >= '0' && c <= '9'; }
int LowerCase(int c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; }
bool IsHexDigit(int c) { return IsDigit(c) || (LowerCase(c) >= 'a' && LowerCase(c) <= 'f'); }
bool IsSign(int c) { return c == '+' || c == '-'; }

void SkipSpace(TextCursor& cursor) {
  while (IsSpace(PeekCharacter(cursor))) ++cursor.position;
}

// Reads the letters of `word` (given in lower case) in either case. The first letter that does not
// match is consumed too: the C library reads it and does not put it back.
bool TakeWord(TextCursor& cursor, const char* word) {
  for (; *word != '\0'; ++word) {
    const int c = PeekCharacter(cursor);
    if (c != EndOfText) ++cursor.position;
    if (LowerCase(c) != *word) return false;
  }
  return true;
}

// "%d": optional sign, decimal digits. A sign without digits is consumed and converts nothing.
bool ScanInteger(TextCursor& cursor, std::int32_t& value, OddNumber& odd) {
  const bool negative = PeekCharacter(cursor) == '-';
  if (IsSign(PeekCharacter(cursor))) ++cursor.position;
  if (!IsDigit(PeekCharacter(cursor))) return false;

  constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
  const std::uint64_t limit = negative ? largest + 1 : largest;
  std::uint64_t magnitude = 0;
  for (int c = PeekCharacter(cursor); IsDigit(c); c = PeekCharacter(cursor)) {
    const auto digit = static_cast<std::uint64_t>(c - '0');
    magnitude = magnitude > (limit - digit) / 10 ? limit : magnitude * 10 + digit;
    ++cursor.position;
  }
  constexpr std::uint64_t largest32 = std::numeric_limits<std::int32_t>::max();
  if (magnitude > (negative ? largest32 + 1 : largest32)) odd = OddNumber::IntegerTooLarge;
  const std::uint64_t bits = negative ? std::uint64_t{0} - magnitude : magnitude;
  value = static_cast<std::int32_t>(static_cast<std::uint32_t>(bits));
  return true;
}

// Reads a number without exponent of at most 15 digits, as nearly all are. Its digits and the power
// of ten of its decimals are exact doubles, so that their quotient is the nearest double (Clinger
// 1990, How to read floating point numbers accurately). The cursor stands behind the sign. Returns
// false, and leaves the cursor there, where something else follows.
bool ScanShortDecimal(TextCursor& cursor, double& value) {
  constexpr std::int32_t LongDigits = 16, Unknown = -1;
  TextCursor at = cursor;
  std::int64_t number = 0;
  std::int32_t digits = 0, point = Unknown;  // point: the number of digits before it
  int c = PeekCharacter(at);
  for (; digits < LongDigits; c = PeekCharacter(at)) {
    if (IsDigit(c)) {
      number = 10 * number + (c - '0');
      ++digits;
    } else if (c == '.' && point == Unknown) {
      point = digits;
    } else {
      break;
    }
    ++at.position;
  }
  const bool isOther = LowerCase(c) == 'e' || LowerCase(c) == 'x';
  if (digits == 0 || digits == LongDigits || isOther) return false;
  cursor.position = at.position;
  value = static_cast<double>(number) / PowerOfTen(point == Unknown ? 0 : digits - point);
  return true;
}

// The parts of a number, as ScanReal finds them.
struct RealText {
  bool hexadecimal = false;
  bool anyDigit = false;
  bool nonzero = false;       // some digit is not 0
  std::string mantissa;       // digits and point
  std::string exponent;       // sign and digits; empty if there is none or it has no digit
  bool exponentLost = false;  // there is an exponent, without a digit
};

constexpr const char* Digits = "the digits of a number";

// Adds a character to a part of a number. A number may be as long as the file.
void AddCharacter(int c, std::string& part) {
  if (part.size() == part.capacity()) {
    const std::size_t size = 2 * part.size();
    AllocateOrStop(Digits, size, 1, [&] { part.reserve(size); });
  }
  part += static_cast<char>(c);
}

// Reads digits and at most one point.
void TakeMantissa(TextCursor& cursor, RealText& number) {
  bool point = false;
  for (int c = PeekCharacter(cursor);; c = PeekCharacter(cursor)) {
    if (IsDigit(c) || (number.hexadecimal && IsHexDigit(c))) {
      number.anyDigit = true;
      if (c != '0') number.nonzero = true;
    } else if (c == '.' && !point) {
      point = true;
    } else {
      return;
    }
    AddCharacter(c, number.mantissa);
    ++cursor.position;
  }
}

// Reads an exponent, if there is one: its letter, an optional sign and digits. The letter and the
// sign are consumed even if no digit follows.
void TakeExponent(TextCursor& cursor, RealText& number) {
  const char letter = number.hexadecimal ? 'p' : 'e';
  if (!number.anyDigit || LowerCase(PeekCharacter(cursor)) != letter) return;
  ++cursor.position;
  bool negative = false;
  if (IsSign(PeekCharacter(cursor))) {
    negative = PeekCharacter(cursor) == '-';
    ++cursor.position;
  }
  if (negative) number.exponent += '-';
  bool anyDigit = false;
  for (int c = PeekCharacter(cursor); IsDigit(c); c = PeekCharacter(cursor)) {
    AddCharacter(c, number.exponent);
    anyDigit = true;
    ++cursor.position;
  }
  if (anyDigit) return;
  number.exponent.clear();
  number.exponentLost = true;
}

// Returns the nearest double; changes number.mantissa. For a number outside the range of doubles
// from_chars gives no value, but strtod gives infinity or zero. (In libstdc++ 11, from_chars also
// reports subnormal numbers as out of range; strtod rounds them correctly.)
double ConvertReal(RealText& number) {
  if (!number.nonzero) return 0.0;
  std::string& text = number.mantissa;
  const std::size_t size = text.size() + number.exponent.size() + 3;  // "0x", "e"
  if (size > text.capacity()) AllocateOrStop(Digits, size, 1, [&] { text.reserve(size); });
  if (!number.exponent.empty()) {
    text += number.hexadecimal ? 'p' : 'e';
    text += number.exponent;
  }
  const auto format = number.hexadecimal ? std::chars_format::hex : std::chars_format::general;
  double value = 0.0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value, format);
  if (result.ec != std::errc::result_out_of_range) return value;
  if (number.hexadecimal) text.insert(0, "0x");
  return std::strtod(text.c_str(), nullptr);
}

OddNumber FindOddity(const RealText& number, double value) {
  if (number.exponentLost || !number.anyDigit) return OddNumber::Incomplete;
  if (std::isinf(value)) return OddNumber::RealTooLarge;
  if (number.nonzero && value == 0.0) return OddNumber::RealTooSmall;
  return OddNumber::None;
}

bool ScanReal(TextCursor& cursor, double& value, OddNumber& odd) {
  const double sign = PeekCharacter(cursor) == '-' ? -1.0 : 1.0;
  if (IsSign(PeekCharacter(cursor))) ++cursor.position;

  double size = 0.0;
  if (ScanShortDecimal(cursor, size)) {
    value = std::copysign(size, sign);
    return true;
  }
  if (LowerCase(PeekCharacter(cursor)) == 'n') {
    if (!TakeWord(cursor, "nan")) return false;
    value = std::copysign(std::numeric_limits<double>::quiet_NaN(), sign);
    return true;
  }
  if (LowerCase(PeekCharacter(cursor)) == 'i') {
    if (!TakeWord(cursor, "inf")) return false;
    if (LowerCase(PeekCharacter(cursor)) == 'i' && !TakeWord(cursor, "inity")) return false;
    value = std::copysign(std::numeric_limits<double>::infinity(), sign);
    return true;
  }

  RealText number;
  if (PeekCharacter(cursor) == '0') {
    ++cursor.position;
    number.hexadecimal = LowerCase(PeekCharacter(cursor)) == 'x';
    if (number.hexadecimal) {
      ++cursor.position;
    } else {
      number.anyDigit = true;
      number.mantissa = "0";
    }
  }
  TakeMantissa(cursor, number);
  TakeExponent(cursor, number);
  const bool zeroPrefix = number.hexadecimal && number.mantissa == ".";  // "0x." counts as its 0
  if (!number.anyDigit && !zeroPrefix) return false;
  value = std::copysign(ConvertReal(number), sign);
  odd = FindOddity(number, value);
  return true;
}

// Reads one conversion. conversion: points after the "%"; moves to the end of the conversion.
bool ScanConversion(TextCursor& cursor, const char*& conversion, const ScanField& field,
                    ScanResult& result) {
  SkipSpace(cursor);
  const std::size_t first = cursor.position;
  const bool isInteger = *conversion == 'd';
  conversion += isInteger ? 1 : 2;  // "d", "lf"
  OddNumber odd = OddNumber::None;
  const bool converted =
      isInteger ? ScanInteger(cursor, *field.integer, odd) : ScanReal(cursor, *field.real, odd);
  if (odd != OddNumber::None && result.odd == OddNumber::None) {
    result.odd = odd;
    result.oddByte = first;
  }
  return converted;
}

}  // namespace

ScanResult ScanFormat(TextCursor& cursor, const char* format,
                      std::initializer_list<ScanField> fields) {
  ScanResult result;
  const ScanField* field = fields.begin();
  while (*format != '\0') {
    const char* const directive = format;
    if (IsSpace(*format)) {
      SkipSpace(cursor);
      ++format;
    } else if (*format == '%') {
      ++format;
      if (!ScanConversion(cursor, format, *field, result)) {
        result.awaited = directive;
        return result;
      }
      ++field;
      ++result.taken;
    } else {
      if (PeekCharacter(cursor) != static_cast<unsigned char>(*format)) {
        result.awaited = directive;
        return result;
      }
      ++cursor.position;
      ++format;
    }
  }
  return result;
}

void SkipLine(TextCursor& cursor) {
  const std::size_t lineFeed = cursor.text.find('\n', cursor.position);
  cursor.position = lineFeed == std::string_view::npos ? cursor.text.size() : lineFeed + 1;
}

}  // namespace korvex
