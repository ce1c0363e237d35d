#include "support/symmetric_eigenvalues.h"

#include <algorithm>
#include <cmath>

namespace korvex::test {

std::vector<double> SymmetricEigenvalues(std::vector<double> A, std::size_t n) {
  // Convergence is quadratic: for n = 24 far fewer sweeps than this limit are needed.
  for (int sweep = 0; sweep < 30; ++sweep) {
    for (std::size_t p = 0; p < n; ++p) {
      for (std::size_t q = p + 1; q < n; ++q) {
        const double apq = A[p * n + q];
        if (apq == 0.0) continue;
        const double tau = (A[q * n + q] - A[p * n + p]) / (2.0 * apq);
        const double t = std::copysign(1.0, tau) / (std::fabs(tau) + std::sqrt(1.0 + tau * tau));
        const double c = 1.0 / std::sqrt(1.0 + t * t);
        const double s = t * c;
        for (std::size_t k = 0; k < n; ++k) {
          const double kp = A[k * n + p], kq = A[k * n + q];
          A[k * n + p] = c * kp - s * kq;
          A[k * n + q] = s * kp + c * kq;
        }
        for (std::size_t k = 0; k < n; ++k) {
          const double pk = A[p * n + k], qk = A[q * n + k];
          A[p * n + k] = c * pk - s * qk;
          A[q * n + k] = s * pk + c * qk;
        }
      }
    }
  }
  std::vector<double> eigenvalues(n);
  for (std::size_t i = 0; i < n; ++i) eigenvalues[i] = A[i * n + i];
  std::sort(eigenvalues.begin(), eigenvalues.end());
  return eigenvalues;
}

}  // namespace korvex::test
