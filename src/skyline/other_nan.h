// NaNs whose bits are not those of 0/0 on x86 processors.
//
// x86 returns the bits of an operand that is a NaN, and of the first operand if both are; 0/0 and
// the like give one fixed NaN, which has the sign bit set. Compilers may exchange the operands of a
// product, so the bits of a product of two different NaNs depend on the compiler and on the vector
// length. While all NaNs have the bits of the fixed one, no order matters. Other NaNs come from the
// model file or from a negation, never from the factorisation, which negates nothing.
#pragma once

#include <cstdint>
#include <vector>

#include "skyline/panel/panel.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// Whether a value is such a NaN.
bool HasOtherNaN(const std::vector<double>& values);

// The same for the columns first .. end - 1 of K.
bool HasOtherNaN(const SkylineMatrix& K, std::int64_t first, std::int64_t end, SumRoutine sum);

}  // namespace korvex
