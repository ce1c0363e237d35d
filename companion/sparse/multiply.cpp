#include "sparse/multiply.h"

#include <algorithm>
#include <cmath>

#include "ranks/ranks.h"

namespace kvx {

namespace {

// Those here.
void MultiplyRows(const UpperMatrix& A, const double* x, double* y, double* s) {
  const auto n = static_cast<std::size_t>(CountRows(A));
  std::fill(y, y + n, 0.0);
  std::fill(s, s + n, 0.0);
  for (std::size_t row = 0; row < CountRowsHere(A); ++row) {
    const std::size_t i = RowOf(A, row);
    const auto begin = static_cast<std::size_t>(A.begins[row]);
    const auto end = static_cast<std::size_t>(A.begins[row + 1]);
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

void SumRowsHere(const UpperMatrix& A, double* sums) {
  std::fill(sums, sums + CountRows(A), 0.0);
  for (std::size_t row = 0; row < CountRowsHere(A); ++row) {
    const std::size_t i = RowOf(A, row);
    const auto begin = static_cast<std::size_t>(A.begins[row]);
    const auto end = static_cast<std::size_t>(A.begins[row + 1]);
    for (std::size_t k = begin; k < end; ++k) {
      const double size = std::fabs(A.values[k]);
      sums[i] += size;
      if (k > begin) sums[static_cast<std::size_t>(A.columns[k])] += size;
    }
  }
}

}  // namespace

void Multiply(const UpperMatrix& A, const double* x, double* y, double* s) {
  const auto n = static_cast<std::size_t>(CountRows(A));
  if (A.isPart) {
    Tell(RankTask::Multiply);
    SendToAll(x, n * sizeof(double));
  }
  MultiplyRows(A, x, y, s);
  if (!A.isPart) return;
  AddToFirst(y, n);
  AddToFirst(s, n);
}

void HelpMultiply(const UpperMatrix& A, std::vector<double>& work) {
  const auto n = static_cast<std::size_t>(CountRows(A));
  double *const x = work.data(), *const y = x + n, *const s = y + n;
  ReceiveFromFirst(x, n * sizeof(double));
  MultiplyRows(A, x, y, s);
  AddToFirst(y, n);
  AddToFirst(s, n);
}

void SumRows(const UpperMatrix& A, std::vector<double>& sums) {
  sums.resize(static_cast<std::size_t>(CountRows(A)));
  if (A.isPart) Tell(RankTask::SumRows);
  SumRowsHere(A, sums.data());
  if (A.isPart) AddToFirst(sums.data(), sums.size());
}

void HelpSumRows(const UpperMatrix& A, std::vector<double>& work) {
  SumRowsHere(A, work.data());
  AddToFirst(work.data(), static_cast<std::size_t>(CountRows(A)));
}

}  // namespace kvx
