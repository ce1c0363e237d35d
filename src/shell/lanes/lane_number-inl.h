// A number of each of several lanes, with which the formulas of the shells are computed side by
// side: every operation is done in all lanes, and rounded in each as a single one.
//
// Everything is in an unnamed namespace: what templates, those of the library too, make of this
// type stays in the unit that is compiled for its processor.
#pragma once

#include <cmath>
#include <cstdint>

namespace korvex {
namespace {

#define KORVEX_LANES [[gnu::always_inline]] friend inline LaneNumber

template <int N>
struct LaneNumber {
  static constexpr int Lanes = N;
  typedef double Vector __attribute__((vector_size(N * sizeof(double))));
  typedef std::int64_t Bits __attribute__((vector_size(N * sizeof(double))));

  Vector v;

  // cppcheck-suppress uninitMemberVar; numbers that are written before they are read
  LaneNumber() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): formulas have constants among their numbers.
  [[gnu::always_inline]] LaneNumber(double number) : v(number - Vector{}) {}
  [[gnu::always_inline]] explicit LaneNumber(const Vector& vector) : v(vector) {}

  KORVEX_LANES operator+(const LaneNumber& a, const LaneNumber& b) { return LaneNumber(a.v + b.v); }
  KORVEX_LANES operator-(const LaneNumber& a, const LaneNumber& b) { return LaneNumber(a.v - b.v); }
  KORVEX_LANES operator*(const LaneNumber& a, const LaneNumber& b) { return LaneNumber(a.v * b.v); }
  KORVEX_LANES operator/(const LaneNumber& a, const LaneNumber& b) { return LaneNumber(a.v / b.v); }
  KORVEX_LANES operator-(const LaneNumber& a) { return LaneNumber(-a.v); }
  KORVEX_LANES& operator+=(LaneNumber& a, const LaneNumber& b) {
    a.v = a.v + b.v;
    return a;
  }

  KORVEX_LANES fabs(const LaneNumber& a) {
    Bits bits;
    __builtin_memcpy(&bits, &a.v, sizeof bits);
    bits &= INT64_MAX;  // all bits but the sign
    LaneNumber result;
    __builtin_memcpy(&result.v, &bits, sizeof bits);
    return result;
  }

  KORVEX_LANES sqrt(const LaneNumber& a) {
    double numbers[N];
    __builtin_memcpy(numbers, &a.v, sizeof numbers);
    for (double& number : numbers) number = __builtin_sqrt(number);
    LaneNumber result;
    __builtin_memcpy(&result.v, numbers, sizeof numbers);
    return result;
  }
};

#undef KORVEX_LANES

template <typename Number>
[[gnu::always_inline]] inline Number LoadLanes(const double* p) {
  Number number;
  __builtin_memcpy(&number.v, p, sizeof number.v);
  return number;
}

template <typename Number>
[[gnu::always_inline]] inline void StoreLanes(double* p, const Number& number) {
  __builtin_memcpy(p, &number.v, sizeof number.v);
}

}  // namespace
}  // namespace korvex
