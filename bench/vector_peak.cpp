// The loop is sums[i] -= a * b for independent sums in registers, without memory access.
#include "vector_peak.h"

#include <algorithm>
#include <ctime>

namespace korvex::bench {

namespace {

// Enough sums to keep both arithmetic units busy; the other registers hold factors and products.
constexpr int Sums = 12;
constexpr long Steps = 2000000;
constexpr int Runs = 5;

// Hides a vector's value from the compiler, so that it neither removes a product nor moves it out
// of the loop.
#define KORVEX_HIDE(vector) asm volatile("" : "+x"(vector))
#define KORVEX_HIDE_WIDE(vector) asm volatile("" : "+v"(vector))

// One function for each processor type. A macro, because a template cannot have the target
// attribute.
#define KORVEX_PEAK_LOOP(Name, Target, Bits, Hide)                         \
  __attribute__((target(Target), noinline)) void Name() {                  \
    typedef double Vector __attribute__((vector_size(Bits / 8)));          \
    Vector sums[Sums] = {};                                                \
    Vector a = Vector{} + 1e-3;                                            \
    const Vector b = Vector{} + 1e-4;                                      \
    for (long step = 0; step < Steps; ++step) {                            \
      _Pragma("GCC unroll 12") for (int i = 0; i < Sums; ++i) {            \
        Hide(a);                                                           \
        sums[i] -= a * b;                                                  \
      }                                                                    \
    }                                                                      \
    _Pragma("GCC unroll 12") for (int i = 0; i < Sums; ++i) Hide(sums[i]); \
  }

KORVEX_PEAK_LOOP(RunLoop128, "sse2", 128, KORVEX_HIDE)
KORVEX_PEAK_LOOP(RunLoop256, "avx", 256, KORVEX_HIDE)
KORVEX_PEAK_LOOP(RunLoop512, "avx512f", 512, KORVEX_HIDE_WIDE)

}  // namespace

double MeasurePeak(int vectorBits) {
  void (*const runLoop)() = vectorBits == 512   ? RunLoop512
                            : vectorBits == 256 ? RunLoop256
                                                : RunLoop128;
  std::clock_t best = 0;
  for (int run = 0; run < Runs; ++run) {
    const std::clock_t start = std::clock();
    runLoop();
    const std::clock_t time = std::clock() - start;
    best = run == 0 ? time : std::min(best, time);
  }
  const double operations = 2.0 * Steps * Sums * (vectorBits / 64);
  return operations * CLOCKS_PER_SEC / static_cast<double>(best);
}

}  // namespace korvex::bench
