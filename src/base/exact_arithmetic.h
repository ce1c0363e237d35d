// Sums and products of two doubles without rounding: the rounded result and its error.
//
// Dekker (1971) for the product, Knuth (1998, sec. 4.2.2, theorem B) for the sum. Exact as long as
// nothing overflows and no product falls below 1e-290. Each operation must be rounded separately:
// a compiler that fuses or reorders operations loses the error.
#pragma once

namespace korvex {

// The unevaluated sum head + tail with |tail| at most half the last digit of head.
struct DoubleDouble {
  double head;
  double tail;
};

// a + b
inline DoubleDouble AddExactly(double a, double b) {
  const double sum = a + b;
  const double partOfB = sum - a;
  return {sum, (a - (sum - partOfB)) + (b - partOfB)};
}

// a = head + tail, the upper and the lower half of its digits.
inline DoubleDouble SplitDigits(double a) {
  constexpr double Splitter = 134217729.0;  // 2^27 + 1: two halves of at most 26 bits
  const double scaled = Splitter * a;
  const double upper = scaled - (scaled - a);
  return {upper, a - upper};
}

// a b
inline DoubleDouble MultiplyExactly(double a, double b) {
  const double product = a * b;
  const DoubleDouble x = SplitDigits(a), y = SplitDigits(b);
  const double error =
      ((x.head * y.head - product) + x.head * y.tail + x.tail * y.head) + x.tail * y.tail;
  return {product, error};
}

}  // namespace korvex
