// Numbers of two vectors in another order, which GCC and Clang name differently.
//
// Always inline: the routine stands in units compiled for different processors, and none may call
// another's.
#pragma once

namespace korvex {

// out: those numbers of a, then b, that the Lanes name, counted from 0 through both. Line: a vector
// type of double, with as many numbers as there are Lanes.
template <int... Lanes, typename Line>
[[gnu::always_inline]] inline void Shuffle(const Line& a, const Line& b, Line& out) {
#ifdef __clang__
  out = __builtin_shufflevector(a, b, Lanes...);
#else
  // Unlike the other form, known before GCC 12.
  typedef long long Mask __attribute__((vector_size(sizeof(Line))));
  out = __builtin_shuffle(a, b, Mask{Lanes...});
#endif
}

}  // namespace korvex
