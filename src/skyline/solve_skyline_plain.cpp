#include "skyline/solve_skyline_plain.h"

#include <algorithm>

namespace korvex {

namespace {

// A(i, j) -= sum of A(k, i) A(k, j), for the rows i of column j from its top row down.
void ReduceColumn(SkylineMatrix& K, std::int64_t j) {
  double* columnJ = Column(K, j);
  const std::int64_t topJ = TopRow(K, j);
  for (std::int64_t i = topJ; i < j; ++i) {
    const double* columnI = Column(K, i);
    const std::int64_t k0 = std::max(TopRow(K, i), topJ);
    double a = columnJ[j - i];
    for (std::int64_t k = k0; k < i; ++k) a -= columnI[i - k] * columnJ[j - k];
    columnJ[j - i] = a;
  }
}

// l(k, j) = A(k, j) / d(k), and d(j) = A(j, j) - sum of l(k, j) A(k, j).
// A zero multiplier must not touch the pivot: -0 - (-0 * 4) would change a pivot of -0 to +0.
void ScaleColumn(SkylineMatrix& K, std::int64_t j) {
  double* columnJ = Column(K, j);
  for (std::int64_t k = TopRow(K, j); k < j; ++k) {
    const double t = columnJ[j - k];
    const double l = t / *Column(K, k);
    columnJ[j - k] = l;
    if (l != 0.0) columnJ[0] -= l * t;
  }
}

}  // namespace

void FactorColumnsPlain(SkylineMatrix& K, std::int64_t first, ColumnCounter& columns) {
  const std::int64_t n = CountColumns(K);
  for (std::int64_t j = first; j < n; ++j) {
    ReduceColumn(K, j);
    ScaleColumn(K, j);
    CountColumns(K, j, j + 1, columns);
  }
}

void ReduceLoadPlain(const SkylineMatrix& K, std::int64_t first, std::vector<double>& F) {
  const auto n = static_cast<std::int64_t>(F.size());
  for (std::int64_t j = first; j < n; ++j) {
    const double* columnJ = Column(K, j);
    double y = F[static_cast<std::size_t>(j)];
    for (std::int64_t k = TopRow(K, j); k < j; ++k) {
      y -= columnJ[j - k] * F[static_cast<std::size_t>(k)];
    }
    F[static_cast<std::size_t>(j)] = y;
  }
}

// Row by row from the bottom. A row of L^T is spread over all later columns, and each of them is
// tested for whether it reaches the row. Going column by column would be faster, but it subtracts
// the terms in another order.
void SubstituteBackPlain(const SkylineMatrix& K, const std::vector<double>& y,
                         std::vector<double>& u) {
  const auto n = static_cast<std::int64_t>(y.size());
  for (std::int64_t i = n - 1; i >= 0; --i) {
    double value = y[static_cast<std::size_t>(i)] / *Column(K, i);
    for (std::int64_t j = i + 1; j < n; ++j) {
      if (i >= TopRow(K, j)) value -= Column(K, j)[j - i] * u[static_cast<std::size_t>(j)];
    }
    u[static_cast<std::size_t>(i)] = value;
  }
}

void SolveSkylinePlain(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                       const ProgressCallback& progress) {
  ColumnCounter columns = {progress, static_cast<std::int64_t>(F.size())};
  FactorSkylinePlain(K, F, columns);
  SubstituteBackPlain(K, F, u);
}

}  // namespace korvex
