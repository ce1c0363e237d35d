// The panel routine in vectors of 128 bits, two numbers each. Compiled for processors that have
// them.
#include "skyline/panel/panel_kernel-inl.h"

namespace korvex {

void FactorPanel128(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows) {
  FactorPanel<ShortVectors<2>>(K, first, work, sliceRows);
}

}  // namespace korvex
