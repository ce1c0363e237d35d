// SSE2, which every 64-bit x86 processor has, AVX and AVX-512.
#include "platform/vector_bits.h"

namespace korvex {

int WidestVectorBits() {
  if (__builtin_cpu_supports("avx512f") != 0) return 512;
  if (__builtin_cpu_supports("avx") != 0) return 256;
  return 128;
}

}  // namespace korvex
