// The panel routine in vectors of 128 bits, two numbers each. Compiled for processors that have
// them.
//
// A tile of 6 x 4 entries and what it takes to reduce it fill the sixteen vector registers.
#include "system/skyline_panel_kernel.h"

namespace korvex {

namespace {

struct Width128 {
  static constexpr int Lanes = 2;
  static constexpr int WideVectors = 2;    // of a strip where all tops are alike
  static constexpr int NarrowVectors = 2;  // of a strip where they differ
  typedef double Vector __attribute__((vector_size(Lanes * sizeof(double))));

  static Vector Multiply(const Vector& v, const double* factor) { return v * *factor; }
};

}  // namespace

void FactorPanel128(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows) {
  FactorPanel<Width128>(K, first, work, sliceRows);
}

}  // namespace korvex
