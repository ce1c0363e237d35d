// Vectors of numbers for the panel routines (skyline_panel.h), of any length.
//
// Width gives them: Lanes, Vector, Multiply, the vectors of a strip of columns, and how many rows
// of how many columns are turned into each other in registers: SquareRows. Everything stands in an
// unnamed namespace and uses no library, so that no other unit can get code for this processor.
#pragma once

namespace korvex {
namespace {

template <typename Width>
using VectorOf = typename Width::Vector;

// Vectors of N numbers where sixteen registers are there: they hold a tile of 6 x 2 N entries and
// what it takes to reduce it.
template <int N>
struct ShortVectors {
  static constexpr int Lanes = N;
  static constexpr int WideVectors = 2;
  static constexpr int NarrowVectors = 2;
  static constexpr int SquareRows = 4;
  typedef double Vector __attribute__((vector_size(Lanes * sizeof(double))));

  static Vector Multiply(const Vector& v, const double* factor) { return v * *factor; }
};

template <typename Width>
inline VectorOf<Width> Load(const double* p) {
  VectorOf<Width> v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}

template <typename Width>
inline void Store(double* p, const VectorOf<Width>& v) {
  __builtin_memcpy(p, &v, sizeof v);
}

// f(0), f(1) .. f(Count - 1), written out, with constants as arguments. Only so do compilers keep
// an array of vectors in registers.
template <int I>
struct Constant {
  constexpr operator int() const { return I; }
};
template <int Count, int I = 0, typename Function>
[[gnu::always_inline]] inline void Repeat(const Function& f) {
  if constexpr (I < Count) {
    f(Constant<I>());
    Repeat<Count, I + 1>(f);
  }
}
#define KORVEX_INLINE __attribute__((always_inline))

// The part of a row that lies in a strip.
template <typename Width, int Vectors>
[[gnu::always_inline]] inline void LoadStrip(const double* p, VectorOf<Width> (&strip)[Vectors]) {
  Repeat<Vectors>([&](auto v) KORVEX_INLINE { strip[v] = Load<Width>(p + v * Width::Lanes); });
}

template <typename Width, int Vectors>
[[gnu::always_inline]] inline void StoreStrip(double* p, const VectorOf<Width> (&strip)[Vectors]) {
  Repeat<Vectors>([&](auto v) KORVEX_INLINE { Store<Width>(p + v * Width::Lanes, strip[v]); });
}

// Which lanes of a vector take part.
template <typename Width>
using MaskOf = decltype(VectorOf<Width>() <= VectorOf<Width>());

}  // namespace
}  // namespace korvex
