// Formatted reading from a text held in memory, with the conventions of the C library's scanf.
//
// Only what the model file needs: literals, white space, "%d" and "%lf". Numbers are rounded
// correctly and equally on every platform, unlike with some C libraries. Where C libraries differ,
// the GNU C library is followed:
//   %d   is computed in 64 bits with saturation; the low 32 bits are the value;
//   %lf  reads the longest text that can begin a number: "1e+" is consumed and gives 1; "inf",
//        "infinity", "nan" and hexadecimal numbers are accepted, "0x." as 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace korvex {

// A text and the position of the next character to be read.
struct TextCursor {
  std::string_view text;     // bytes as they stand in the file; the caller owns them
  std::size_t position = 0;  // 0 .. text.size()
};

// The variable in which one conversion stores its value. Its type must match the conversion:
// int32_t for "%d", double for "%lf". Exactly one of the two pointers is set.
struct ScanField {
  ScanField(std::int32_t* target) : integer(target) {}  // NOLINT(google-explicit-constructor)
  ScanField(double* target) : real(target) {}           // NOLINT(google-explicit-constructor)
  std::int32_t* integer = nullptr;
  double* real = nullptr;
};

// What the conversions accept although the value is not what the text says.
enum class OddNumber {
  None,
  IntegerTooLarge,  // outside 32 bits: its low 32 bits are the value
  Incomplete,       // "1e+", "0x.": digits are missing; the value is that of the rest, or 0
  RealTooLarge,     // infinity, from digits
  RealTooSmall,     // 0, from digits that are not all 0
};

// How far a format was read.
struct ScanResult {
  int taken = 0;                    // conversions that have stored a value
  const char* awaited = nullptr;    // the format from the directive that did not match; null: none
  OddNumber odd = OddNumber::None;  // of the first odd number
  std::size_t oddByte = 0;          // its first byte, position in the text
};

// Reads `format` from the cursor and stores the converted values into `fields` in order. Stops at
// the first directive that does not match; the remaining fields keep their values. The cursor then
// stands before the character that did not match; within "inf", "infinity" or "nan" it stands after
// it. White space in the format matches any white space, or none; every other character outside a
// conversion must match exactly.
ScanResult ScanFormat(TextCursor& cursor, const char* format,
                      std::initializer_list<ScanField> fields);

// Moves the cursor after the next line feed, or to the end of the text.
void SkipLine(TextCursor& cursor);

}  // namespace korvex
