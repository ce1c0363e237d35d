// Numbers as text: six significant digits in general notation, the characters of "%.6g".
//
// Nearly all numbers of a result file lie between 1e-17 and 1e28. For these the digits come from
// one exact product or quotient with a power of ten, which tells also on which side of a tie the
// number lies; ties go to the even digit, as in the C library. All others, and infinities and NaNs
// ("nan" or "-nan" by the sign bit), go through std::to_chars, which is four times slower.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace korvex {

// Room for the longest number, "-1.23457e-308", and for every 64-bit integer.
using NumberBuffer = std::array<char, 24>;

// The characters stand in `buffer`.
std::string_view FormatNumber(double number, NumberBuffer& buffer);
std::string_view FormatNumber(std::int64_t number, NumberBuffer& buffer);

}  // namespace korvex
