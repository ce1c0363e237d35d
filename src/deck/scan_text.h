// Formatted reading from a text held in memory, with the conventions of the C library's scanf.
//
// Only what the model file needs: literals, white space, "%d" and "%lf". Numbers are rounded
// correctly, which not every C library's own scanf does, and come out the same on every platform.
// Where C libraries differ, the readings of the GNU C library hold:
//   %d   accumulates in 64 bits with saturation, then keeps the low 32 bits;
//   %lf  takes the longest prefix that looks like a number; of "1e+" the whole is consumed and the
//        value is 1; "inf", "infinity", "nan" and hexadecimal numbers are accepted, "0x." as 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace korvex {

// A text and the position of the next character to be read.
struct TextCursor {
  std::string text;          // the whole file, bytes as they stand
  std::size_t position = 0;  // 0 .. text.size()
};

// Where one conversion of a format stores its value. Exactly one of the two is set, by the type of
// the variable, and must match the conversion: int32_t for "%d", double for "%lf".
struct ScanField {
  ScanField(std::int32_t* target) : integer(target) {}  // NOLINT(google-explicit-constructor)
  ScanField(double* target) : real(target) {}           // NOLINT(google-explicit-constructor)
  std::int32_t* integer = nullptr;
  double* real = nullptr;
};

// How far a format was read.
struct ScanResult {
  int taken = 0;                  // conversions that have stored a value
  const char* awaited = nullptr;  // the format from the directive that did not match; null: none
};

// Reads `format` from the cursor and stores the converted values into `fields` in order. Stops at
// the first directive that does not match, with the cursor before the character that did not fit
// (behind it where that broke off an "inf", "infinity" or "nan"); the fields from there on keep
// their values. White space in the format takes any amount of white space, none included; every
// other character outside a conversion must match exactly.
ScanResult ScanFormat(TextCursor& cursor, const char* format,
                      std::initializer_list<ScanField> fields);

// Skips the rest of a line with its line feed; stops at the end of the text.
void SkipLine(TextCursor& cursor);

}  // namespace korvex
