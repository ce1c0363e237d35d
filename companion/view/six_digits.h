// Six significant digits of a double as two integers: the digits that result files show
// (base/number_text.h), without their text.
//
// Numbers that base/six_digits.h does not round take the way by the text.
#pragma once

#include <cstdint>

namespace kvx {

// digits x 10^exponent; 100000 <= |digits| <= 999999, or 0 with the exponent 0.
struct SixDigits {
  std::int32_t digits = 0;
  std::int32_t exponent = 0;
};

// number: finite. -0 is 0.
SixDigits RoundToSixDigits(double number);

}  // namespace kvx
