#include "sparse/column_quality.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "sparse/multiply.h"

namespace kvx {

namespace {

constexpr double Epsilon = std::numeric_limits<double>::epsilon();

// Not below `value`; once it is NaN it stays so.
void Raise(double value, double& largest) {
  if (!std::isnan(largest) && !(value <= largest)) largest = value;
}

double LargestOf(const double* v, std::size_t n) {
  double largest = 0.0;
  for (std::size_t i = 0; i < n; ++i) Raise(std::fabs(v[i]), largest);
  return largest;
}

}  // namespace

void BeginQuality(const UpperMatrix& A, QualityTable& table) {
  SumRows(A, table.rowSums);
  table.norm = LargestOf(table.rowSums.data(), table.rowSums.size());
  table.weights.assign(table.rowSums.size(), 0.0);
  table.f.assign(table.rowSums.size(), 0.0);
}

ColumnQuality MeasureColumn(const UpperMatrix& A, const double* x, const double* b,
                            QualityTable& table, double* r) {
  const std::size_t n = table.rowSums.size();
  const double size = LargestOf(x, n);
  const double roundings = 1000.0 * static_cast<double>(n) * Epsilon;
  std::vector<double>& f = table.f;
  Multiply(A, x, r, f.data());
  ColumnQuality quality;
  for (std::size_t i = 0; i < n; ++i) {
    r[i] = b[i] - r[i];
    f[i] += std::fabs(b[i]);
    const double whole = table.rowSums[i] * size;
    if (f[i] <= roundings * (whole + std::fabs(b[i]))) f[i] += whole;
    if (f[i] != 0.0) Raise(std::fabs(r[i]) / f[i], quality.backwardError);
  }
  const double whole = table.norm * size + LargestOf(b, n);
  if (whole != 0.0) quality.residual = LargestOf(r, n) / whole;
  return quality;
}

void RaiseWeights(const double* x, QualityTable& table) {
  const double size = LargestOf(x, table.f.size());
  if (size == 0.0) return;
  for (std::size_t i = 0; i < table.f.size(); ++i) {
    const double weight = table.f[i] / size;
    if (weight > std::fabs(table.weights[i])) table.weights[i] = std::copysign(weight, x[i]);
  }
}

bool TakeStep(const UpperMatrix& A, const double* b, QualityTable& table, double* d, double* x,
              ColumnQuality& quality) {
  const std::size_t n = table.rowSums.size();
  for (std::size_t i = 0; i < n; ++i) d[i] += x[i];
  std::vector<double> r(n);
  const ColumnQuality after = MeasureColumn(A, d, b, table, r.data());
  if (!(after.backwardError < quality.backwardError)) return false;
  std::copy(d, d + n, x);
  quality = after;
  return true;
}

}  // namespace kvx
