// The double-double arithmetic of sine_cosine.h. The tails are rounding errors, recovered exactly.
#include "beamshell/sine_cosine.h"

#include <cmath>

#include "base/exact_arithmetic.h"

namespace korvex {

namespace {

DoubleDouble Add(const DoubleDouble& a, const DoubleDouble& b) {
  const DoubleDouble heads = AddExactly(a.head, b.head);
  return AddExactly(heads.head, heads.tail + (a.tail + b.tail));
}

DoubleDouble Multiply(const DoubleDouble& a, const DoubleDouble& b) {
  const DoubleDouble product = MultiplyExactly(a.head, b.head);
  return AddExactly(product.head, product.tail + (a.head * b.tail + a.tail * b.head));
}

DoubleDouble Divide(const DoubleDouble& a, double b) {
  const double quotient = a.head / b;
  const DoubleDouble product = MultiplyExactly(quotient, b);
  const double remainder = ((a.head - product.head) - product.tail) + a.tail;
  return AddExactly(quotient, remainder / b);
}

// angle - k pi / 2. Three parts of pi / 2: next to a multiple the first cancels, and one digit
// beyond the double nearest to the multiple it is the third that rounds.
DoubleDouble Reduce(double angle, int k) {
  constexpr double HalfPi[3] = {1.5707963267948966, 6.123233995736766e-17, -1.4973849048591833e-33};
  DoubleDouble r{angle, 0.0};
  for (const double part : HalfPi) r = Add(r, MultiplyExactly(-k, part));
  return r;
}

// first - first r^2 / ((m+1)(m+2)) + ...: the series of the sine (first = r, m = 1) or of the
// cosine (first = 1, m = 0), for |r| <= pi / 4. The first term left out, (pi / 4)^26 / 26!, is
// below 5e-30; with it goes all that remains.
double SumSeries(const DoubleDouble& r, const DoubleDouble& first, int m) {
  constexpr int Terms = 13;
  const DoubleDouble square = Multiply(r, r);
  DoubleDouble term = first, sum = first;
  for (int i = 1; i < Terms; ++i) {
    term = Divide(Multiply(term, square), -static_cast<double>((m + 1) * (m + 2)));
    sum = Add(sum, term);
    m += 2;
  }
  return sum.head;
}

}  // namespace

SineCosine ComputeSineCosine(double angle) {
  const double halfPi = std::acos(-1.0) / 2.0;
  // Where the sum rounds up just below a half, r is next to pi / 4 on the other side: as good.
  const int k = static_cast<int>(angle / halfPi + 0.5);  // NOLINT(bugprone-incorrect-roundings)
  const DoubleDouble r = Reduce(angle, k);
  const double sine = SumSeries(r, r, 1);
  const double cosine = SumSeries(r, {1.0, 0.0}, 0);
  switch (k % 4) {
    case 1:
      return {cosine, -sine};
    case 2:
      return {-sine, -cosine};
    case 3:
      return {-cosine, sine};
    default:
      return {sine, cosine};
  }
}

}  // namespace korvex
