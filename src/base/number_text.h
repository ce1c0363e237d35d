// Numbers as text: six significant digits in general notation, the characters of "%.6g".
//
// Numbers from 1e-16 to 1e27 are converted with one product or quotient with a power of ten and the
// sign of its rounding error; the digits are therefore exact, and ties go to the even digit as in
// the C library. All other numbers, infinities and NaNs ("nan" or "-nan" by the sign bit) are
// converted by std::to_chars, which is four times slower.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace korvex {

// Long enough for the longest double, "-1.23457e-308", and for every 64-bit integer.
using NumberBuffer = std::array<char, 24>;

// Both return the text of `number`. Its characters are in `buffer`.
std::string_view FormatNumber(double number, NumberBuffer& buffer);
std::string_view FormatNumber(std::int64_t number, NumberBuffer& buffer);

}  // namespace korvex
