// The panel routine in vectors of 512 bits, eight numbers each. Compiled for processors that have
// them.
//
// A tile of 6 x 24 entries and what it takes to reduce it fill the thirty-two vector registers.
#include "skyline/panel/panel_kernel-inl.h"

namespace korvex {

namespace {

struct Width512 {
  static constexpr int Lanes = 8;
  static constexpr int WideVectors = 3;    // of a strip where all tops are alike
  static constexpr int NarrowVectors = 1;  // of a strip where they differ
  static constexpr int SquareRows = 8;     // a square of rows and columns fills eight registers
  typedef double Vector __attribute__((vector_size(Lanes * sizeof(double))));

  // The instruction spreads the factor over the lanes itself. Left to themselves, compilers spread
  // it once for three products, which costs Zen 4 a third of its speed.
  static Vector Multiply(const Vector& v, const double* factor) {
    Vector product;
    asm("vmulpd %2%{1to8%}, %1, %0" : "=v"(product) : "v"(v), "m"(*factor));
    return product;
  }
};

}  // namespace

void FactorPanel512(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows) {
  FactorPanel<Width512>(K, first, work, sliceRows);
}

}  // namespace korvex
