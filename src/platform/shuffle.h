// Selects numbers from two vectors in a given order. GCC and Clang have different names for this.
//
// Always inline: source files compiled for different processors include this header. If the
// routine were linked once for all of them, a processor could get instructions it does not have.
#pragma once

namespace korvex {

// out[i] = number Lanes[i] of the sequence a[0], a[1], ..., b[0], b[1], ...
// Line: a vector type of doubles with as many numbers as there are Lanes.
template <int... Lanes, typename Line>
[[gnu::always_inline]] inline void Shuffle(const Line& a, const Line& b, Line& out) {
#ifdef __clang__
  out = __builtin_shufflevector(a, b, Lanes...);
#else
  // GCC has __builtin_shufflevector only from version 12 on.
  typedef long long Mask __attribute__((vector_size(sizeof(Line))));
  out = __builtin_shuffle(a, b, Mask{Lanes...});
#endif
}

}  // namespace korvex
