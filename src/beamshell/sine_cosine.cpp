// A DoubleDouble is an unevaluated sum head + tail; the tail is the rounding error of the head
// (base/exact_arithmetic.h).
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

// Returns angle - k pi / 2. pi / 2 is the sum of three doubles. Near a multiple of pi / 2 the first
// one cancels, so the result has the precision of the second and third.
DoubleDouble Reduce(double angle, int k) {
  constexpr double HalfPi[3] = {1.5707963267948966, 6.123233995736766e-17, -1.4973849048591833e-33};
  DoubleDouble r{angle, 0.0};
  for (const double part : HalfPi) r = Add(r, MultiplyExactly(-k, part));
  return r;
}

// Returns first - first r^2 / ((m+1)(m+2)) + ...: the series of the sine (first = r, m = 1) or of
// the cosine (first = 1, m = 0), for |r| <= pi / 4. The largest neglected term is
// (pi / 4)^26 / 26! < 5e-30; all later terms together are smaller.
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
  // The nearest k. Rounding of the sum may give the next k; then |r| exceeds pi / 4 by a rounding
  // error only, which does no harm.
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
