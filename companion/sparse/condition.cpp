#include "sparse/condition.h"

#include <algorithm>
#include <cmath>

namespace kvx {

namespace {

// The sum of w(i) |x(i)|: the 1-norm of W A^-1 b, whose largest for |b| = 1 is the value looked
// for.
double WeighedSum(const std::vector<double>& w, const double* x) {
  double sum = 0.0;
  for (std::size_t i = 0; i < w.size(); ++i) sum += w[i] * std::fabs(x[i]);
  return sum;
}

// Not below `bound`; once it is NaN it stays so.
void Raise(double bound, double& value) {
  if (!std::isnan(value) && !(bound <= value)) value = bound;
}

}  // namespace

// The mean of all columns, and a vector with changing signs that grows: it finds what cancels out
// in the mean. The sum of its magnitudes is 3 n / 2.
void MakeFirstColumns(std::size_t n, double* b) {
  const double last = std::max(1.0, static_cast<double>(n) - 1.0);
  for (std::size_t i = 0; i < n; ++i) {
    b[i] = 1.0 / static_cast<double>(n);
    b[n + i] = (i % 2 == 0 ? 1.0 : -1.0) * (1.0 + static_cast<double>(i) / last);
  }
}

void TakeFirstColumns(const std::vector<double>& w, const double* x, ConditionEstimate& estimate,
                      double* b) {
  const std::size_t n = w.size();
  estimate.value = WeighedSum(w, x);
  Raise(2.0 * WeighedSum(w, x + n) / (3.0 * static_cast<double>(n)), estimate.value);
  for (std::size_t i = 0; i < n; ++i) b[i] = std::copysign(w[i], x[i]);
}

void TakeMode(const double* x, std::size_t n, ConditionEstimate& estimate, double* b) {
  estimate.mode.assign(x, x + n);
  const auto smaller = [](double a, double c) { return std::fabs(a) < std::fabs(c); };
  const auto largest = std::max_element(x, x + n, smaller) - x;
  Raise(std::fabs(x[largest]), estimate.value);
  std::fill(b, b + n, 0.0);
  b[largest] = 1.0;
}

void TakeLastColumn(const std::vector<double>& w, const double* x, ConditionEstimate& estimate) {
  Raise(WeighedSum(w, x), estimate.value);
}

}  // namespace kvx
