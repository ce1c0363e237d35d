// Small dense matrices, row-major: entry (i, j) of an m x n matrix is at index i * n + j.
//
// Every routine writes into storage of the caller; none allocates. A size below 1 makes a routine
// do nothing. Sums run over the inner index in ascending order, starting from 0.0: the results are
// compared bit for bit, so another order is another result.
#pragma once

#include <cstdint>

namespace korvex {

// out: n x m = transpose of in: m x n. `out` must not alias `in`.
void MatTranspose(double* out, const double* in, std::int32_t m, std::int32_t n);

// C: m x p = A: m x n times B: n x p. C must not alias A or B.
void MatMultiply(double* C, const double* A, const double* B, std::int32_t m, std::int32_t n,
                 std::int32_t p);

// C: m x n = A + B, entry by entry. C may be A (elements accumulate in place).
void MatAdd(double* C, const double* A, const double* B, std::int32_t m, std::int32_t n);

// C: m x n = s * A, entry by entry. C may be A.
void MatScale(double* C, const double* A, double s, std::int32_t m, std::int32_t n);

}  // namespace korvex
