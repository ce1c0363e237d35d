// The dense-matrix routines of matrix.h, as plain loops: their matrices are 24 x 24 at the most.
#include "shell/matrix.h"

namespace korvex {

void MatTranspose(double* out, const double* in, std::int32_t m, std::int32_t n) {
  for (std::int32_t k = 0; k < m; ++k) {
    for (std::int32_t i = 0; i < n; ++i) out[i * m + k] = in[k * n + i];
  }
}

void MatMultiply(double* C, const double* A, const double* B, std::int32_t m, std::int32_t n,
                 std::int32_t p) {
  if (n < 1) return;
  for (std::int32_t i = 0; i < m; ++i) {
    for (std::int32_t j = 0; j < p; ++j) {
      double sum = 0.0;
      for (std::int32_t k = 0; k < n; ++k) sum += A[i * n + k] * B[k * p + j];
      C[i * p + j] = sum;
    }
  }
}

void MatAdd(double* C, const double* A, const double* B, std::int32_t m, std::int32_t n) {
  for (std::int32_t i = 0; i < m; ++i) {
    for (std::int32_t j = 0; j < n; ++j) C[i * n + j] = A[i * n + j] + B[i * n + j];
  }
}

void MatScale(double* C, const double* A, double s, std::int32_t m, std::int32_t n) {
  for (std::int32_t i = 0; i < m; ++i) {
    for (std::int32_t j = 0; j < n; ++j) C[i * n + j] = s * A[i * n + j];
  }
}

}  // namespace korvex
