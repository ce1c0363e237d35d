#include "sparse/condition.h"

#include <algorithm>
#include <cmath>

namespace kvx {

namespace {

// Not below `bound`; once it is NaN it stays so.
void Raise(double bound, double& value) {
  if (!std::isnan(value) && !(bound <= value)) value = bound;
}

// Signs without a pattern that a mesh could have: one bit of a random sequence (Knuth 1998, sec.
// 3.3.4, line 26).
bool IsNegative(std::uint64_t& state) {
  state = state * 6364136223846793005U + 1442695040888963407U;
  return (state >> 63U) != 0;
}

// Where the largest magnitude stands, or the first NaN.
std::size_t FindLargest(const double* x, std::size_t n) {
  std::size_t largest = 0;
  for (std::size_t i = 0; i < n && !std::isnan(x[largest]); ++i) {
    if (!(std::fabs(x[i]) <= std::fabs(x[largest]))) largest = i;
  }
  return largest;
}

}  // namespace

void MakeModeColumns(const std::vector<double>& w, double* b) {
  const std::size_t n = w.size();
  std::uint64_t state = 1;
  for (std::size_t i = 0; i < n; ++i) {
    b[i] = w[i];
    b[n + i] = IsNegative(state) ? -w[i] : w[i];
  }
}

void TakeModes(const double* x, std::size_t n, ConditionEstimate& estimate, double* b) {
  estimate = {};
  const double* mode = x;
  for (const double* column = x; column < x + ModeColumns * n; column += n) {
    const double size = EstimateFromSigns(column, n);
    if (!(size <= estimate.value)) mode = column;
    Raise(size, estimate.value);
  }
  estimate.mode.assign(mode, mode + n);
  std::fill(b, b + n, 0.0);
  b[FindLargest(mode, n)] = 1.0;
}

// The sum of w(i) |x(i)|: the 1-norm of W A^-1 b, whose largest for |b| = 1 is the value looked
// for.
void TakeLastColumn(const std::vector<double>& w, const double* x, ConditionEstimate& estimate) {
  double sum = 0.0;
  for (std::size_t i = 0; i < w.size(); ++i) sum += std::fabs(w[i] * x[i]);
  Raise(sum, estimate.value);
}

double EstimateFromSigns(const double* x, std::size_t n) { return std::fabs(x[FindLargest(x, n)]); }

}  // namespace kvx
