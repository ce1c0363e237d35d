// Numbers as text: six significant digits in general notation, the characters of "%.6g".
//
// Numbers from 1.5e-39 to 8.9e43 are converted with one product with a rounded power of ten,
// wherever it decides all digits; see six_digits.h. Almost all other numbers, infinities and NaNs
// ("nan" or "-nan" by the sign bit) are converted by std::to_chars, which takes about ten times as
// long.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace korvex {

// Characters that a number needs while it is written. More than the longest text, which is
// "-1.23457e-308" or a 64-bit integer: a few characters behind the text may change, too.
constexpr std::size_t NumberRoom = 24;

// Both write the text of `number` to `out`, which has NumberRoom characters, and return its end.
char* WriteNumber(double number, char* out);
char* WriteNumber(std::int64_t number, char* out);

// Columns of tables have 15 characters.
constexpr std::size_t ColumnWidth = 15;

// Writes a column with the number at its right end, which every double has room in. `out` as above.
char* WriteColumn(double number, char* out);

using NumberBuffer = std::array<char, NumberRoom>;

// Returns the text of `number`. Its characters are in `buffer`.
template <typename Number>
std::string_view FormatNumber(Number number, NumberBuffer& buffer) {
  const char* end = WriteNumber(number, buffer.data());
  return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

}  // namespace korvex
