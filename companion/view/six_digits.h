// Six significant digits of a double as two integers: the digits that result files show
// (base/number_text.h), without their text.
//
// One product with a power of ten gives them, unless it lies so near a tie or a power of ten that
// its rounding could decide; those numbers take the way by the text.
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
