#include "sparse/multiply.h"

#include <algorithm>
#include <cmath>

namespace kvx {

void Multiply(const UpperMatrix& A, const double* x, double* y, double* s) {
  const auto n = static_cast<std::size_t>(CountRows(A));
  std::fill(y, y + n, 0.0);
  std::fill(s, s + n, 0.0);
  for (std::size_t i = 0; i < n; ++i) {
    const auto begin = static_cast<std::size_t>(A.begins[i]);
    const auto end = static_cast<std::size_t>(A.begins[i + 1]);
    double sum = A.values[begin] * x[i];
    double magnitude = std::fabs(sum);
    const double xi = x[i], absolute = std::fabs(x[i]);
    for (std::size_t k = begin + 1; k < end; ++k) {
      const auto j = static_cast<std::size_t>(A.columns[k]);
      const double value = A.values[k];
      const double size = std::fabs(value);
      sum += value * x[j];
      magnitude += size * std::fabs(x[j]);
      y[j] += value * xi;
      s[j] += size * absolute;
    }
    y[i] += sum;
    s[i] += magnitude;
  }
}

void SumRows(const UpperMatrix& A, std::vector<double>& sums) {
  const auto n = static_cast<std::size_t>(CountRows(A));
  sums.assign(n, 0.0);
  for (std::size_t i = 0; i < n; ++i) {
    const auto begin = static_cast<std::size_t>(A.begins[i]);
    const auto end = static_cast<std::size_t>(A.begins[i + 1]);
    for (std::size_t k = begin; k < end; ++k) {
      const double size = std::fabs(A.values[k]);
      sums[i] += size;
      if (k > begin) sums[static_cast<std::size_t>(A.columns[k])] += size;
    }
  }
}

}  // namespace kvx
