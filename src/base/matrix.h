// Small dense matrices, row-major: entry (i, j) of an m x n matrix is at index i * n + j.
//
// The caller owns all arrays; no routine allocates. With a size below 1 a routine does nothing.
// Sums run over the inner index in ascending order, starting from 0.0: another order would change
// the last bits. All routines are inline, because callers pass constant sizes: the compiler can
// then compute several entries of a row with one instruction.
//
// Number: double, or a vector with a number of each of several lanes, which are computed side by
// side.
#pragma once

#include <cstdint>

namespace korvex {

// out: n x m = transpose of in: m x n. `out` must not alias `in`.
template <typename Number>
inline void MatTranspose(Number* out, const Number* in, std::int32_t m, std::int32_t n) {
  for (std::int32_t k = 0; k < m; ++k) {
    for (std::int32_t i = 0; i < n; ++i) out[i * m + k] = in[k * n + i];
  }
}

// C: m x p = A: m x n times B: n x p. C must not alias A or B.
template <typename Number>
inline void MatMultiply(Number* C, const Number* A, const Number* B, std::int32_t m, std::int32_t n,
                        std::int32_t p) {
  if (n < 1) return;
  for (std::int32_t i = 0; i < m; ++i) {
    for (std::int32_t j = 0; j < p; ++j) C[i * p + j] = 0.0;
    // All sums of row i grow together, each over k ascending.
    for (std::int32_t k = 0; k < n; ++k) {
      for (std::int32_t j = 0; j < p; ++j) C[i * p + j] += A[i * n + k] * B[k * p + j];
    }
  }
}

// C: m x n = A + B, entry by entry. C may be A (elements accumulate in place).
template <typename Number>
inline void MatAdd(Number* C, const Number* A, const Number* B, std::int32_t m, std::int32_t n) {
  for (std::int32_t i = 0; i < m; ++i) {
    for (std::int32_t j = 0; j < n; ++j) C[i * n + j] = A[i * n + j] + B[i * n + j];
  }
}

// C: m x n = s * A, entry by entry. C may be A.
template <typename Number>
inline void MatScale(Number* C, const Number* A, Number s, std::int32_t m, std::int32_t n) {
  for (std::int32_t i = 0; i < m; ++i) {
    for (std::int32_t j = 0; j < n; ++j) C[i * n + j] = s * A[i * n + j];
  }
}

}  // namespace korvex
