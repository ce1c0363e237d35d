// Formatted reads: conversions, white space, literals, values and position after a failed read, and
// the rounding of hard numbers. The last test reads random texts with every format of the model
// file and demands the values and the position that the C library's fscanf gives.
#include "deck/scan_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "model/fscanf_reader.h"

namespace korvex {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double UnreadReal = -77.25;
constexpr std::int32_t UnreadInteger = -7700;

// The result of one read of one number: the value, or the "Unread" value, and the position.
struct RealRead {
  double value = UnreadReal;
  std::size_t position = 0;
};
struct IntegerRead {
  std::int32_t value = UnreadInteger;
  std::size_t position = 0;
};

RealRead ReadReal(const std::string& text) {
  TextCursor cursor{text};
  RealRead read;
  ScanFormat(cursor, "%lf", {&read.value});
  read.position = cursor.position;
  return read;
}

IntegerRead ReadInteger(const std::string& text) {
  TextCursor cursor{text};
  IntegerRead read;
  ScanFormat(cursor, "%d", {&read.value});
  read.position = cursor.position;
  return read;
}

// Values are compared by their bits, so that 0 and -0 differ and a NaN equals itself.
std::uint64_t GetBits(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// Expects that the read takes the whole of `text` and gives `value`.
void ExpectReal(const std::string& text, double value) {
  const RealRead read = ReadReal(text);
  EXPECT_EQ(GetBits(read.value), GetBits(value))
      << text << " gave " << read.value << ", not " << value;
  EXPECT_EQ(read.position, text.size()) << text;
}

// Expects that the read converts nothing and leaves the cursor at `position`.
void ExpectNoReal(const std::string& text, std::size_t position) {
  const RealRead read = ReadReal(text);
  EXPECT_EQ(read.value, UnreadReal) << text;
  EXPECT_EQ(read.position, position) << text;
}

void ExpectInteger(const std::string& text, std::int32_t value) {
  const IntegerRead read = ReadInteger(text);
  EXPECT_EQ(read.value, value) << text;
  EXPECT_EQ(read.position, text.size()) << text;
}

void ExpectNoInteger(const std::string& text, std::size_t position) {
  const IntegerRead read = ReadInteger(text);
  EXPECT_EQ(read.value, UnreadInteger) << text;
  EXPECT_EQ(read.position, position) << text;
}

TEST(ScanInteger, TakesSignAndDigits) {
  ExpectInteger("0", 0);
  ExpectInteger("12", 12);
  ExpectInteger("+12", 12);
  ExpectInteger("-12", -12);
  ExpectInteger("007", 7);
}

TEST(ScanInteger, StopsBeforeTheFirstCharacterThatIsNoDigit) {
  EXPECT_EQ(ReadInteger("12.5").position, 2U);
  EXPECT_EQ(ReadInteger("12e3").value, 12);
  EXPECT_EQ(ReadInteger("0x10").value, 0);
  EXPECT_EQ(ReadInteger("0x10").position, 1U);
  EXPECT_EQ(ReadInteger("1 2").position, 1U);
}

TEST(ScanInteger, WithoutDigitsConvertsNothing) {
  ExpectNoInteger("", 0);
  ExpectNoInteger("x1", 0);
  ExpectNoInteger(".5", 0);
  ExpectNoInteger("  x", 2);  // the white space before the conversion is consumed
}

TEST(ScanInteger, SignWithoutDigitsIsConsumed) {
  ExpectNoInteger("-", 1);
  ExpectNoInteger("+x", 1);
  ExpectNoInteger("--1", 1);
  ExpectNoInteger("- 1", 1);
}

// The number saturates at 64 bits, and its low 32 bits are kept.
TEST(ScanInteger, OverflowSaturatesAt64BitsAndKeepsTheLow32) {
  ExpectInteger("2147483647", 2147483647);
  ExpectInteger("2147483648", std::numeric_limits<std::int32_t>::min());   // 2^31
  ExpectInteger("-2147483648", std::numeric_limits<std::int32_t>::min());  // -2^31
  ExpectInteger("-2147483649", 2147483647);                                // -2^31 - 1
  ExpectInteger("4294967295", -1);                                         // 2^32 - 1
  ExpectInteger("4294967301", 5);                                          // 2^32 + 5
  ExpectInteger("9223372036854775806", -2);                                // 2^63 - 2
  ExpectInteger("9223372036854775808", -1);                                // saturates at 2^63 - 1
  ExpectInteger("-9223372036854775807", 1);                                // -2^63 + 1
  ExpectInteger("-9223372036854775809", 0);                                // saturates at -2^63
  ExpectInteger("18446744073709551616", -1);                               // 2^64
  ExpectInteger(std::string(1000, '9'), -1);
}

TEST(ScanReal, TakesSignDigitsPointAndExponent) {
  ExpectReal("0", 0.0);
  ExpectReal("-0", -0.0);
  ExpectReal("+2.5", 2.5);
  ExpectReal("-.5", -0.5);
  ExpectReal("5.", 5.0);
  ExpectReal("1e3", 1000.0);
  ExpectReal("1.E+3", 1000.0);
  ExpectReal("25e-1", 2.5);
  ExpectReal("00012", 12.0);
}

TEST(ScanReal, StopsBeforeTheFirstCharacterThatDoesNotBelong) {
  EXPECT_EQ(ReadReal("1.5.5").position, 3U);
  EXPECT_EQ(ReadReal("1.e5.").position, 4U);  // no point after the exponent's letter
  EXPECT_EQ(ReadReal("1e5e5").position, 3U);
  EXPECT_EQ(ReadReal("1e5-5").position, 3U);
  EXPECT_EQ(ReadReal("1,5").position, 1U);
  EXPECT_EQ(ReadReal("2d3").position, 1U);
  EXPECT_EQ(ReadReal("1-").position, 1U);
}

TEST(ScanReal, WithoutDigitsConvertsNothing) {
  ExpectNoReal("", 0);
  ExpectNoReal("abc", 0);
  ExpectNoReal(" \n e5", 3);
  ExpectNoReal(",", 0);
}

TEST(ScanReal, SignOrPointWithoutDigitsIsConsumed) {
  ExpectNoReal("-", 1);
  ExpectNoReal("--1", 1);
  ExpectNoReal("+ 1", 1);
  ExpectNoReal(".", 1);
  ExpectNoReal("-.", 2);
  ExpectNoReal("..", 1);
  ExpectNoReal(".e5", 1);
}

TEST(ScanReal, ExponentWithoutDigitsIsConsumedAndCountsAsNone) {
  ExpectReal("3e", 3.0);
  ExpectReal("3e+", 3.0);
  ExpectReal("3E-", 3.0);
  EXPECT_EQ(ReadReal("3e+,").position, 3U);
  EXPECT_EQ(ReadReal("3e+-5").position, 3U);
  EXPECT_EQ(ReadReal("3ex").position, 2U);
  ExpectReal("0x1p", 1.0);
  ExpectReal("0x1p+", 1.0);
}

TEST(ScanReal, InfinityAndNan) {
  ExpectReal("inf", Infinity);
  ExpectReal("-INF", -Infinity);
  ExpectReal("+Infinity", Infinity);
  ExpectReal("nan", std::numeric_limits<double>::quiet_NaN());
  ExpectReal("-NaN", -std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(ReadReal("infx").position, 3U);
  EXPECT_EQ(ReadReal("nan(1)").position, 3U);  // no payload
}

// The characters of the word are consumed, and so is the first that does not belong to it.
TEST(ScanReal, BrokenWordIsConsumedWithTheCharacterThatBreaksIt) {
  ExpectNoReal("nax", 3);
  ExpectNoReal("n,5", 2);
  ExpectNoReal("na\n7", 3);
  ExpectNoReal("-ix", 3);
  ExpectNoReal("in5", 3);
  ExpectNoReal("infix", 5);
  ExpectNoReal("infinit,", 8);
}

TEST(ScanReal, BrokenWordAtTheEndOfTheTextStopsThere) {
  ExpectNoReal("n", 1);
  ExpectNoReal("na", 2);
  ExpectNoReal("in", 2);
  ExpectNoReal("infi", 4);
}

TEST(ScanReal, Hexadecimal) {
  ExpectReal("0x10", 16.0);
  ExpectReal("-0X.8", -0.5);
  ExpectReal("0xA.8p1", 21.0);
  ExpectReal("0x1e3", 483.0);  // 0x1e3: "e" is a digit here
  ExpectReal("+0x1p-3", 0.125);
  EXPECT_EQ(ReadReal("0x1g").position, 3U);
  EXPECT_EQ(ReadReal("00x1").position, 2U);
}

TEST(ScanReal, HexadecimalPrefixAloneIsConsumedAndConvertsNothing) {
  ExpectNoReal("0x", 2);
  ExpectNoReal("-0X", 3);
  ExpectNoReal("0xg", 2);
  ExpectNoReal("0xp5", 2);
}

TEST(ScanReal, HexadecimalPrefixWithAPointIsZero) {
  ExpectReal("0x.", 0.0);
  ExpectReal("-0x.", -0.0);
  EXPECT_EQ(ReadReal("0x.p5").value, 0.0);
  EXPECT_EQ(ReadReal("0x.p5").position, 3U);
}

// Each expected value is the double nearest to the decimal, written exactly.
TEST(ScanReal, RoundsToNearest) {
  ExpectReal("0.1", 0x1.999999999999ap-4);
  ExpectReal("1e23", 0x1.52d02c7e14af6p+76);
  ExpectReal("3.14159265358979323846264338327950288", 0x1.921fb54442d18p+1);
  ExpectReal("123456789012345678901234567890", 0x1.8ee90ff6c373ep+96);
  ExpectReal("72057594037927933", 0x1p+56);  // 2^56 - 3, and doubles are 8 apart
}

// Up to 18 digits with the point anywhere, and what may follow: the length decides how they are
// converted. The C library's strtod rounds correctly.
TEST(ScanReal, ShortAndLongDecimalsAreTheNearestDoubles) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 40000; ++i) {
    const std::size_t size = 1 + random() % 18;
    std::string digits;
    while (digits.size() < size) digits += static_cast<char>('0' + random() % 10);
    if (i % 4 != 0) digits.insert(random() % (size + 1), 1, '.');
    const std::string text = (i % 3 == 0 ? "-" : "") + digits;
    ExpectReal(text, std::strtod(text.c_str(), nullptr));
    ExpectReal(text + "e-3", std::strtod((text + "e-3").c_str(), nullptr));
    EXPECT_EQ(ReadReal(text + ",7").position, text.size());
  }
}

// Between 2^53 and 2^54 doubles are the even integers, so an odd one lies half way.
TEST(ScanReal, RoundsHalfWayCasesToEven) {
  ExpectReal("9007199254740993", 0x1p+53);                // 2^53 + 1 -> 2^53
  ExpectReal("9007199254740995", 0x1.0000000000002p+53);  // 2^53 + 3 -> 2^53 + 4
  ExpectReal("-9007199254740993", -0x1p+53);
  ExpectReal("0x1.00000000000008p0", 1.0);
  ExpectReal("0x1.00000000000018p0", 0x1.0000000000002p0);
}

TEST(ScanReal, ADistantDigitDecidesAHalfWayCase) {
  const std::string zeros(800, '0');
  ExpectReal("9007199254740993." + zeros, 0x1p+53);
  ExpectReal("9007199254740993." + zeros + "1", 0x1.0000000000001p+53);
  ExpectReal("9007199254740993" + zeros + "1e-801", 0x1.0000000000001p+53);
  ExpectReal("0x1.00000000000008" + zeros + "1", 0x1.0000000000001p0);
}

TEST(ScanReal, SubnormalNumbers) {
  ExpectReal("5e-324", 0x1p-1074);
  ExpectReal("2.4703282292062328e-324", 0x1p-1074);  // half of it is 2.47032822920623272...e-324
  ExpectReal("2.4703282292062327e-324", 0.0);
  ExpectReal("2.2250738585072011e-308", 0x0.fffffffffffffp-1022);  // half way: ...20113606e-308
  ExpectReal("2.2250738585072012e-308", 0x1p-1022);
  ExpectReal("0x1p-1075", 0.0);  // half way, to even
  ExpectReal("0x1.8p-1075", 0x1p-1074);
}

TEST(ScanReal, TheLargestDoubleAndBeyond) {
  // 2^1024 - 2^970 lies half way to the first number that has no double.
  const std::string halfWay =
      "1797693134862315807937289714053034150799341327100378269361737789804449682927647509466490179"
      "7758720709633028641669288791094655554785194040263065748867150582068190890200070838367627385"
      "4845817711531764475730270069855571366959622842914819860834936475292719074168444365510704342"
      "711559699508093042880177904174497791";
  ExpectReal("1.7976931348623157e308", 0x1.fffffffffffffp+1023);
  ExpectReal(halfWay, 0x1.fffffffffffffp+1023);  // ends in 1, one less than half way
  ExpectReal(halfWay.substr(0, halfWay.size() - 1) + "2", Infinity);
  ExpectReal("1.7976931348623159e308", Infinity);
  ExpectReal("-1e309", -Infinity);
  ExpectReal("0x1p1024", Infinity);
}

TEST(ScanReal, ExponentsOfAnySize) {
  ExpectReal("1e400", Infinity);
  ExpectReal("-1e-400", -0.0);
  ExpectReal("1e99999999999999999999999", Infinity);
  ExpectReal("1e-99999999999999999999999", 0.0);
  ExpectReal("0e99999999999999999999999", 0.0);
  ExpectReal("0x1p99999999999999999999999", Infinity);
  ExpectReal("-0x1p-99999999999999999999999", -0.0);
  ExpectReal("0x0p99999", 0.0);
}

// The mantissa's own magnitude makes up for an exponent that alone has no double.
TEST(ScanReal, LongMantissaAgainstALargeExponent) {
  const std::string zeros(400, '0');
  ExpectReal("0." + zeros + "1e401", 1.0);
  ExpectReal("1" + zeros + "e-400", 1.0);
  ExpectReal("0." + zeros + "1e400", 0x1.999999999999ap-4);  // 0.1
  ExpectReal("0x." + zeros + "1p1604", 1.0);                 // 401 hexadecimal places
  ExpectReal("0x1" + zeros + "p-1600", 1.0);
  ExpectReal("0." + zeros + zeros + "1e401", 0.0);      // 1e-400
  ExpectReal("1" + zeros + zeros + "e-400", Infinity);  // 1e400
  ExpectReal("0x." + zeros + zeros + "1p1604", 0.0);
  ExpectReal("1" + zeros, Infinity);
  ExpectReal("0." + zeros + "1", 0.0);
}

TEST(ScanFormat, WhiteSpaceBeforeANumberIsSkipped) {
  EXPECT_EQ(ReadInteger(" \t\n\v\f\r7").value, 7);
  EXPECT_EQ(ReadReal(" \t\n\v\f\r7").value, 7.0);
}

TEST(ScanFormat, NoOtherCharacterIsWhiteSpace) {
  ExpectNoReal(std::string("\0001", 2), 0);
  ExpectNoReal(
      "\xA0"
      "1",
      0);
  ExpectNoReal("\b1", 0);
}

TEST(ScanFormat, WhiteSpaceInTheFormatTakesAnyAmount) {
  for (const std::string text : {"ab", "a b", "a \t\n\v\f\r b"}) {
    TextCursor cursor{text};
    ScanFormat(cursor, "a b", {});
    EXPECT_EQ(cursor.position, text.size()) << text;
  }
}

TEST(ScanFormat, TrailingWhiteSpaceTakesLineEndsAndTheNextIndentation) {
  TextCursor cursor{"5\r\n\r\n \t 6"};
  std::int32_t value = 0;
  ScanFormat(cursor, "%d\n", {&value});
  EXPECT_EQ(cursor.position, 8U);
}

TEST(ScanFormat, WithoutTrailingWhiteSpaceTheLineEndStays) {
  TextCursor cursor{"5\n6"};
  std::int32_t value = 0;
  ScanFormat(cursor, "%d", {&value});
  EXPECT_EQ(cursor.position, 1U);
}

TEST(ScanFormat, LiteralStopsBeforeTheCharacterThatDiffers) {
  TextCursor cursor{"NTK=5"};
  std::int32_t value = UnreadInteger;
  ScanFormat(cursor, "NTBS=%d", {&value});
  EXPECT_EQ(cursor.position, 2U);
  EXPECT_EQ(value, UnreadInteger);
}

TEST(ScanFormat, LiteralMatchesCase) {
  TextCursor cursor{"e=5"};
  double value = UnreadReal;
  ScanFormat(cursor, "E=%lf", {&value});
  EXPECT_EQ(cursor.position, 0U);
  EXPECT_EQ(value, UnreadReal);
}

TEST(ScanFormat, LiteralSkipsNoWhiteSpace) {
  TextCursor cursor{"5 :6"};
  std::int32_t first = UnreadInteger, second = UnreadInteger;
  ScanFormat(cursor, "%d:%d", {&first, &second});
  EXPECT_EQ(first, 5);
  EXPECT_EQ(second, UnreadInteger);
  EXPECT_EQ(cursor.position, 1U);
}

TEST(ScanFormat, LiteralOfTheUpperHalfOfTheByteValuesMatches) {
  TextCursor cursor{"\xFF"};
  ScanFormat(cursor, "\xFF", {});
  EXPECT_EQ(cursor.position, 1U);
}

TEST(ScanFormat, FieldsAfterAFailureKeepTheirValues) {
  TextCursor cursor{"3:1.5;2.5,3.5"};
  std::int32_t number = UnreadInteger;
  std::array<double, 3> values{UnreadReal, UnreadReal, UnreadReal};
  ScanFormat(cursor, "%d:%lf,%lf,%lf\n", {&number, &values[0], &values[1], &values[2]});
  EXPECT_EQ(number, 3);
  EXPECT_EQ(values, (std::array<double, 3>{1.5, UnreadReal, UnreadReal}));
  EXPECT_EQ(cursor.position, 5U);  // before the ";"
}

TEST(ScanFormat, TheNextReadContinuesWhereAFailedOneStopped) {
  TextCursor cursor{"7;8"};
  std::int32_t first = 0, second = UnreadInteger;
  ScanFormat(cursor, "%d:%d", {&first, &second});
  ScanFormat(cursor, ";%d", {&second});
  EXPECT_EQ(second, 8);
}

TEST(ScanFormat, NothingIsReadAtTheEndOfTheText) {
  TextCursor cursor{"ab", 2};
  double value = UnreadReal;
  ScanFormat(cursor, " b%lf\n", {&value});
  EXPECT_EQ(cursor.position, 2U);
  EXPECT_EQ(value, UnreadReal);
}

// What is accepted although the value is not what the text says, and its place.
TEST(ScanFormat, TellsTheFirstNumberWhoseValueIsNotItsText) {
  const auto scan = [](std::string_view text) {
    TextCursor cursor{text};
    std::int32_t number = 0;
    double value = 0.0;
    return ScanFormat(cursor, "%d:%lf", {&number, &value});
  };
  EXPECT_EQ(scan("2147483647: 1e308").odd, OddNumber::None);
  EXPECT_EQ(scan("-2147483648: 4.9e-324").odd, OddNumber::None);
  EXPECT_EQ(scan("1: 0e-999").odd, OddNumber::None);
  EXPECT_EQ(scan("1: -inf").odd, OddNumber::None);  // says what it is
  EXPECT_EQ(scan("1: 0x1p3").odd, OddNumber::None);
  EXPECT_EQ(scan("  2147483648: 1").odd, OddNumber::IntegerTooLarge);
  EXPECT_EQ(scan("  2147483648: 1e").oddByte, 2U);
  EXPECT_EQ(scan("-2147483649: 1").odd, OddNumber::IntegerTooLarge);
  EXPECT_EQ(scan("1: 1e309").odd, OddNumber::RealTooLarge);
  EXPECT_EQ(scan("1: 1e309").oddByte, 3U);
  EXPECT_EQ(scan("1: -1e-400").odd, OddNumber::RealTooSmall);
  EXPECT_EQ(scan("1: 5e+").odd, OddNumber::Incomplete);
  EXPECT_EQ(scan("1: 0x1p").odd, OddNumber::Incomplete);
  EXPECT_EQ(scan("1: 0x.").odd, OddNumber::Incomplete);
}

TEST(SkipLine, StopsAfterTheLineFeed) {
  TextCursor cursor{"T_beam #1\n  Hw=1"};
  SkipLine(cursor);
  EXPECT_EQ(cursor.position, 10U);  // the indentation stays
}

TEST(SkipLine, CarriageReturnAndZeroAreOrdinaryCharacters) {
  TextCursor cursor{std::string_view("a\rb\0c\nd", 7)};
  SkipLine(cursor);
  EXPECT_EQ(cursor.position, 6U);
}

TEST(SkipLine, WithoutALineFeedStopsAtTheEnd) {
  TextCursor cursor{"T_beam #1"};
  SkipLine(cursor);
  EXPECT_EQ(cursor.position, 9U);
  SkipLine(cursor);
  EXPECT_EQ(cursor.position, 9U);
}

#ifdef __GLIBC__  // where the C standard leaves a choice, this library is followed

constexpr std::size_t FieldsAtMost = 10;

// Every format of the model file.
constexpr const char* Formats[] = {
    "### Toln_Korvex release=%lf ###\n",
    "Number of materials:NMT=%d\n",
    "#%d:\n",
    "E=%lf\n",
    "Mu=%lf\n",
    "Density=%lf\n",
    "Number of shell thicknesses:NTK=%d\n",
    "TK=%lf\n",
    "Number of T_beam sections:NTBS=%d\n",
    "Number of L_beam sections:NLBS=%d\n",
    "Number of C_beam sections:NCBS=%d\n",
    "Hw=%lf\n",
    "Tw=%lf\n",
    "Bf=%lf\n",
    "Tf=%lf\n",
    "R=%lf\n",
    "T=%lf\n",
    "Number of nodal points:NPOIN=%d\n",
    "%d:%lf,%lf,%lf\n",
    "Number of four-nodes shell elements:NELEM_S_4ND=%d\n",
    "%d:",
    "%d,%d,%d,%d[%d,%d]\n",
    "Number of three-nodes shell elements:NELEM_S_3ND=%d\n",
    "%d,%d,%d[%d,%d]\n",
    "Number of beam elements:NELEM_B=%d\n",
    "%d,%d<%lf,%lf,%lf>[%d,BeamSecType=%d,BeamSecIndex=%d,BeamSecOz=%lf,BeamSecMirrored=%d]\n",
    "Number of restricted nodal points:NRN=%d\n",
    "%d",
    "%d\n",
    "Number of forces:NFOR=%d\n",
    "%d<",
    "%lf,",
    "%lf>\n",
    "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=%d\n",
    "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=%d\n",
    "Number of distributed loads on beam elements:NDL_B=%d\n",
    "%d:%lf,%lf\n",
};

// Spellings that are just a number, or just not one.
constexpr const char* OddNumbers[] = {
    "",         "1e+",  "1e",        "1e-5",     "0x",       "0x.",       "0x.p1",   "0x.8p+",
    ".",        "-",    "+",         "-.",       "infin",    "inf",       "-inf",    "infinity",
    "infinitx", "nax",  "nan",       "-nan",     "n",        "i",         "nan(12)", "1.e5.",
    "+0x1p",    "--1",  "+-1",       "0X1.8P-2", "1..2",     ".e1",       "0e",      "00",
    "0x0p9999", "1e5e", "1E400",     "-1e-400",  "1.e",      "0x1.8p1.5", "1_000",   "1d5",
    "- 1",      "1 e5", "INFINITYx", "Na",       "iNf",      "0xp1",      "0xg",     "-0",
    "0x1e+5",   "0b1",  "1,5",       "1e+-5",    "0x1p-1075"};

// A source of random texts. The same seed gives the same numbers on every platform.
struct TextSource {
  std::mt19937_64 engine{20240607};  // NOLINT(cert-msc32-c,cert-msc51-cpp): any seed serves
};

std::size_t Draw(TextSource& source, std::size_t choices) {
  return static_cast<std::size_t>(source.engine() % choices);
}

std::string DrawCharacters(TextSource& source, const std::string& alphabet, std::size_t length) {
  std::string text;
  for (std::size_t i = 0; i < length; ++i) text += alphabet[Draw(source, alphabet.size())];
  return text;
}

// Digits of either base with a point somewhere and an exponent that is sometimes extreme.
std::string DrawDigits(TextSource& source, bool hexadecimal) {
  const std::string digits = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
  const std::size_t length = Draw(source, 20) == 0 ? 900 : 25;
  std::string text = Draw(source, 3) == 0 ? "-" : "";
  if (hexadecimal) text += "0x";
  text += DrawCharacters(source, digits, Draw(source, length));
  if (Draw(source, 2) == 0) text += "." + DrawCharacters(source, digits, Draw(source, length));
  if (Draw(source, 2) == 0) return text;
  text += hexadecimal ? 'p' : 'e';
  text += DrawCharacters(source, "+-", Draw(source, 2));
  const std::size_t range = hexadecimal ? 1200 : 350;
  text += std::to_string(Draw(source, Draw(source, 2) == 0 ? 20 : range));
  return text;
}

// The exact decimal half way between two neighbouring doubles, sometimes with one more digit.
std::string DrawHalfWay(TextSource& source) {
  const std::uint64_t bits = source.engine() & 0x7FFFFFFFFFFFFFFFU;
  double below = 0.0;
  std::memcpy(&below, &bits, sizeof below);
  const double above = std::nextafter(below, Infinity);
  if (!std::isfinite(above)) return "1";
  const long double middle = (static_cast<long double>(below) + above) / 2;
  std::array<char, 1300> text{};
  std::snprintf(text.data(), text.size(), "%.1100Le", middle);
  std::string number(text.data());
  if (Draw(source, 2) == 0) number.insert(number.find('e'), "1");
  return number;
}

// An integer near 2^31, 2^32, 2^63 or 2^64, or one of a few digits.
std::string DrawBorderInteger(TextSource& source) {
  constexpr const char* borders[] = {"214748364",           "429496729",
                                     "922337203685477580",  "1844674407370955161",
                                     "9223372036854775807", "0"};
  std::string text = Draw(source, 2) == 0 ? "-" : "";
  return text + borders[Draw(source, 6)] + DrawCharacters(source, "0123456789", Draw(source, 3));
}

std::string DrawNumber(TextSource& source) {
  switch (Draw(source, 20)) {
    case 0:
      return DrawDigits(source, false);
    case 1:
      return DrawDigits(source, true);
    case 2:
      return DrawBorderInteger(source);
    case 3:
      return Draw(source, 20) == 0 ? DrawHalfWay(source) : "2.5";
    case 4:
    case 5:
    case 6:
    case 7:
      return OddNumbers[Draw(source, std::size(OddNumbers))];
    case 8:
    case 9:
      return DrawCharacters(source, "0011259+-..eExXpPaAfFnNiItTyY", Draw(source, 8));
    case 10:
      return DrawCharacters(source, " \t\n\v\f\r", Draw(source, 3)) + "-3.25e-1";
    default:
      return DrawCharacters(source, "0123456789", 1 + Draw(source, 3));
  }
}

// One random change: a byte replaced, dropped or inserted, or the text cut there.
void SpoilText(TextSource& source, std::string& text) {
  if (text.empty()) return;
  constexpr char bytes[] = "\0\n\r\v\f\t ,.:<>[]#=-+0159eExXnNiIaA\xFF";
  const std::string alphabet(bytes, sizeof bytes - 1);
  const std::size_t at = Draw(source, text.size());
  const std::size_t kind = Draw(source, 4);
  if (kind == 0) text[at] = alphabet[Draw(source, alphabet.size())];
  if (kind == 1) text.erase(at, 1);
  if (kind == 2) text.insert(at, 1, alphabet[Draw(source, alphabet.size())]);
  if (kind == 3) text.resize(at);
}

// A text that mostly fits `format`: its literals, other white space, numbers of every kind.
std::string DrawText(TextSource& source, const char* format) {
  std::string text;
  for (const char* f = format; *f != '\0'; ++f) {
    if (*f == '%') {
      text += DrawNumber(source);
      if (*++f == 'l') ++f;
    } else if (*f == ' ' || *f == '\n') {
      text += Draw(source, 4) != 0 ? std::string(1, *f)
                                   : DrawCharacters(source, " \t\n\v\f\r", Draw(source, 4));
    } else {
      text += *f;
    }
  }
  if (Draw(source, 3) == 0) SpoilText(source, text);
  return text;
}

// What a reader made of a text: for each conversion a variable of either type, and the position
// afterwards.
struct ReadResult {
  std::array<std::int32_t, FieldsAtMost> integers{};
  std::array<double, FieldsAtMost> reals{};
  std::size_t position = 0;
};

ReadResult UnreadResult() {
  ReadResult result;
  result.integers.fill(UnreadInteger);
  result.reals.fill(UnreadReal);
  return result;
}

// Tells for each conversion of the format whether it is "%lf". All others are "%d".
std::array<bool, FieldsAtMost> FindReals(const char* format) {
  std::array<bool, FieldsAtMost> isReal{};
  std::size_t field = 0;
  for (const char* f = format; *f != '\0'; ++f) {
    if (*f == '%') isReal[field++] = f[1] == 'l';
  }
  return isReal;
}

ReadResult ReadWithOurs(const std::string& text, const char* format) {
  ReadResult result = UnreadResult();
  const std::array<bool, FieldsAtMost> isReal = FindReals(format);
  std::vector<ScanField> f;
  for (std::size_t i = 0; i < FieldsAtMost; ++i) {
    f.push_back(isReal[i] ? ScanField(&result.reals[i]) : ScanField(&result.integers[i]));
  }
  TextCursor cursor{text};
  ScanFormat(cursor, format, {f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9]});
  result.position = cursor.position;
  return result;
}

ReadResult ReadWithLibrary(const std::string& text, const char* format) {
  std::string bytes = text;
  ReadResult result = UnreadResult();
  const std::array<bool, FieldsAtMost> isReal = FindReals(format);
  std::array<void*, FieldsAtMost> f{};
  for (std::size_t i = 0; i < FieldsAtMost; ++i) {
    f[i] = isReal[i] ? static_cast<void*>(&result.reals[i]) : &result.integers[i];
  }
  std::FILE* stream = fmemopen(bytes.data(), bytes.size(), "rb");
  const int ignored = std::fscanf(stream, format, f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7],
                                  f[8], f[9]);  // unused arguments are allowed
  static_cast<void>(ignored);
  result.position = static_cast<std::size_t>(std::ftell(stream));
  std::fclose(stream);
  return result;
}

bool SameResult(const ReadResult& a, const ReadResult& b) {
  for (std::size_t i = 0; i < FieldsAtMost; ++i) {
    if (GetBits(a.reals[i]) != GetBits(b.reals[i])) return false;
  }
  return a.integers == b.integers && a.position == b.position;
}

TEST(ScanFormat, ReadsRandomTextsAsTheCLibraryDoes) {
  if (!test::ReadsBrokenNumbersAlike()) GTEST_SKIP() << "this scanf reads broken numbers otherwise";
  constexpr int texts = 200000;
  TextSource source;
  int differences = 0, wholeReads = 0;
  for (int i = 0; i < texts && differences < 20; ++i) {
    const char* format = Formats[Draw(source, std::size(Formats))];
    const std::string text = DrawText(source, format);
    if (text.empty()) continue;  // no stream can be opened on it
    const ReadResult ours = ReadWithOurs(text, format);
    const ReadResult library = ReadWithLibrary(text, format);
    if (ours.position == text.size()) ++wholeReads;
    if (SameResult(ours, library)) continue;
    ++differences;
    ADD_FAILURE() << "format " << testing::PrintToString(format) << "\ntext "
                  << testing::PrintToString(text) << "\nposition " << ours.position << ", library "
                  << library.position;
  }
  std::printf("%d of %d random texts read to their end\n", wholeReads, texts);
  EXPECT_GT(wholeReads, texts / 3);  // a text that stops early tells little
}

#endif

}  // namespace
}  // namespace korvex
