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

// w with scattered signs.
void Scatter(const std::vector<double>& w, double* b) {
  std::uint64_t state = 1;
  for (std::size_t i = 0; i < w.size(); ++i) b[i] = IsNegative(state) ? -w[i] : w[i];
}

}  // namespace

void MakeProbe(const std::vector<double>& sums, double* b) { Scatter(sums, b); }

std::size_t FindPeak(const double* x, std::size_t n) {
  std::size_t largest = 0;
  for (std::size_t i = 0; i < n && !std::isnan(x[largest]); ++i) {
    if (!(std::fabs(x[i]) <= std::fabs(x[largest]))) largest = i;
  }
  return largest;
}

void MakeModeColumns(const std::vector<double>& w, std::size_t peak, double* b) {
  const std::size_t n = w.size();
  std::copy(w.begin(), w.end(), b);
  Scatter(w, b + n);
  std::fill(b + 2 * n, b + 3 * n, 0.0);
  b[2 * n + peak] = 1.0;
}

// At one dof, the sum of w(i) |x(i)|: the 1-norm of W A^-1 b, whose largest for |b| = 1 is the
// value looked for.
void TakeModes(const std::vector<double>& w, const double* x, ConditionEstimate& estimate) {
  const std::size_t n = w.size();
  estimate = {};
  const double* mode = x;
  for (const double* column = x; column < x + 2 * n; column += n) {
    const double size = EstimateFromSigns(column, n);
    if (!(size <= estimate.value)) mode = column;
    Raise(size, estimate.value);
  }
  estimate.mode.assign(mode, mode + n);
  double sum = 0.0;
  for (std::size_t i = 0; i < n; ++i) sum += std::fabs(w[i] * x[2 * n + i]);
  Raise(sum, estimate.value);
}

double EstimateFromSigns(const double* x, std::size_t n) { return std::fabs(x[FindPeak(x, n)]); }

}  // namespace kvx
