// Numbers of decks: the whole text must be the number. Independent of the locale.
#pragma once

#include <cstdint>
#include <string_view>

namespace kvx {

// A decimal integer with an optional sign; without blanks. Returns false where it is none, or where
// it does not fit.
bool ScanInteger(std::string_view text, std::int64_t& value);

// A decimal number such as 12, -.5, 1.e3, 1.5E-3, 1.5D-3 with an optional sign; without blanks.
// Returns false where it is none, or is too large for a double; what is too small is 0. No "inf",
// "nan" and no hexadecimal digits.
bool ScanDouble(std::string_view text, double& value);

// The text without blanks and tabs at both ends.
std::string_view TrimBlanks(std::string_view text);

}  // namespace kvx
