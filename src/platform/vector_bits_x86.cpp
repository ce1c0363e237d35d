#include "platform/vector_bits.h"

namespace korvex {

int WidestVectorBits() {
  const bool hasAvx512 = __builtin_cpu_supports("avx512f");  // an int to GCC, a bool to Clang
  const bool hasAvx = __builtin_cpu_supports("avx");
  if (hasAvx512) return 512;
  if (hasAvx) return 256;
  return 128;
}

}  // namespace korvex
