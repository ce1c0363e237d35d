// Vectors of doubles of any length, for the panel routines (panel.h), several systems (systems.h)
// and shells side by side (shell/lanes/shell_lanes.h). A type Width describes them:
//   Lanes          doubles of a vector
//   Vector         the vector type
//   Multiply       v * factor in all lanes
//   WideVectors, NarrowVectors   vectors of a strip; narrow strips serve panels with ragged tops
//   SquareRows     rows and columns of a square that is transposed in registers
//   GroupColumns, TileHeight     columns and rows of a tile of several systems
// Everything is in an unnamed namespace and uses no library. Otherwise the linker might give
// another unit a function compiled for this unit's processor.
#pragma once

namespace korvex {
namespace {

template <typename Width>
using VectorOf = typename Width::Vector;

// Vectors of N doubles on processors with 16 vector registers: a tile of 6 rows and 2 vectors takes
// 12, a row of the slice 2, products the rest.
template <int N>
struct ShortVectors {
  static constexpr int Lanes = N;
  static constexpr int WideVectors = 2;
  static constexpr int NarrowVectors = 2;
  static constexpr int SquareRows = 4;
  static constexpr int GroupColumns = 3;
  static constexpr int TileHeight = 3;
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

// Calls f(0), f(1) .. f(Count - 1), written out, with constants as arguments. With a loop,
// compilers keep an array of vectors in memory instead of registers.
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

// Loads a row of a strip from p.
template <typename Width, int Vectors>
[[gnu::always_inline]] inline void LoadStrip(const double* p, VectorOf<Width> (&strip)[Vectors]) {
  Repeat<Vectors>([&](auto v) KORVEX_INLINE { strip[v] = Load<Width>(p + v * Width::Lanes); });
}

template <typename Width, int Vectors>
[[gnu::always_inline]] inline void StoreStrip(double* p, const VectorOf<Width> (&strip)[Vectors]) {
  Repeat<Vectors>([&](auto v) KORVEX_INLINE { Store<Width>(p + v * Width::Lanes, strip[v]); });
}

// A mask of lanes: all bits set in active lanes, else zero.
template <typename Width>
using MaskOf = decltype(VectorOf<Width>() <= VectorOf<Width>());

}  // namespace
}  // namespace korvex
