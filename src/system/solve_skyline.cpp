// The three stages of SolveSkyline: factorisation, forward reduction, back substitution.
//
// Notation: A(i, j), i <= j, is the stored entry at DiagonalAddress[j] + (j - i); m(j) is the top
// row of column j; n the number of equations. This is the plain form of the algorithm. Each entry
// receives its terms one by one in ascending order of k; a faster routine must give the same bits.
#include "system/solve_skyline.h"

#include <algorithm>

#include "platform/console.h"

namespace korvex {

namespace {

// The diagonal entry of column j; the entry of row i lies j - i behind it.
double* Column(SkylineMatrix& K, std::int64_t j) {
  return K.Values.data() + K.DiagonalAddress[static_cast<std::size_t>(j)];
}

std::int64_t TopRow(const SkylineMatrix& K, std::int64_t j) {
  return j - K.ColumnHeights[static_cast<std::size_t>(j)] + 1;
}

// Prints the share of columns done behind column j where it is a multiple of 20 percent. Many
// columns share a percentage; each print but the last steps back over itself, so that the next
// overwrites it.
void PrintProgress(std::int64_t j, std::int64_t n) {
  const auto p = static_cast<int>((j * 100 + 100) / n);
  if (p == 20 || p == 40 || p == 60 || p == 80) {
    PrintFormatted("%2d%%Completed.\b\b\b\b\b\b\b\b\b\b\b\b\b", p);
  } else if (p == 100) {
    PrintFormatted("%2d%%Completed.", p);
  }
}

// A(i, j) -= sum over k of A(k, i) A(k, j) for the rows i of column j, from its top downward.
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

// l(k, j) = A(k, j) / d(k), and d(j) = A(j, j) - sum over k of l(k, j) A(k, j). A zero multiplier
// leaves the pivot untouched, also where the product would be a NaN.
void ScaleColumn(SkylineMatrix& K, std::int64_t j) {
  double* columnJ = Column(K, j);
  for (std::int64_t k = TopRow(K, j); k < j; ++k) {
    const double t = columnJ[j - k];
    const double l = t / *Column(K, k);
    columnJ[j - k] = l;
    if (l != 0.0) columnJ[0] -= l * t;
  }
}

// L y = F, y in place of F.
void ReduceLoad(SkylineMatrix& K, std::vector<double>& F) {
  const auto n = static_cast<std::int64_t>(F.size());
  for (std::int64_t j = 1; j < n; ++j) {
    const double* columnJ = Column(K, j);
    double y = F[static_cast<std::size_t>(j)];
    for (std::int64_t k = TopRow(K, j); k < j; ++k) {
      y -= columnJ[j - k] * F[static_cast<std::size_t>(k)];
    }
    F[static_cast<std::size_t>(j)] = y;
  }
}

// u = D^-1 y, then L^T u, row by row from the bottom. The rows of L^T are read across columns, and
// every later column is asked whether it reaches up to the row: going by columns instead would
// subtract in another order.
void SubstituteBack(SkylineMatrix& K, const std::vector<double>& F, std::vector<double>& u) {
  const auto n = static_cast<std::int64_t>(F.size());
  for (std::int64_t i = n - 1; i >= 0; --i) {
    double value = F[static_cast<std::size_t>(i)] / *Column(K, i);
    for (std::int64_t j = i + 1; j < n; ++j) {
      if (i >= TopRow(K, j)) value -= Column(K, j)[j - i] * u[static_cast<std::size_t>(j)];
    }
    u[static_cast<std::size_t>(i)] = value;
  }
}

}  // namespace

void SolveSkyline(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                  SolverProgress progress) {
  const auto n = static_cast<std::int64_t>(K.ColumnHeights.size());
  for (std::int64_t j = 0; j < n; ++j) {
    ReduceColumn(K, j);
    ScaleColumn(K, j);
    if (progress == SolverProgress::Printed) PrintProgress(j, n);
  }
  ReduceLoad(K, F);
  SubstituteBack(K, F, u);
}

}  // namespace korvex
