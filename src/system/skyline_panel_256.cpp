// The panel routine in vectors of 256 bits, four numbers each. Compiled for processors that have
// them.
//
// A tile of 6 x 8 entries and what it takes to reduce it fill the sixteen vector registers.
#include "system/skyline_panel_kernel.h"

namespace korvex {

namespace {

struct Width256 {
  static constexpr int Lanes = 4;
  static constexpr int WideVectors = 2;    // of a strip where all tops are alike
  static constexpr int NarrowVectors = 2;  // of a strip where they differ
  typedef double Vector __attribute__((vector_size(Lanes * sizeof(double))));

  static Vector Multiply(const Vector& v, const double* factor) { return v * *factor; }
};

}  // namespace

void FactorPanel256(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows) {
  FactorPanel<Width256>(K, first, work, sliceRows);
}

}  // namespace korvex
