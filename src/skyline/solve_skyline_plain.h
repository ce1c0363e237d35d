// The plain solution of K u = F: the active-column method as textbooks give it (Bathe 1996, sec.
// 8.2.3), entry by entry.
//
//   A(i, j) -= sum A(k, i) A(k, j)     k = max(m(i), m(j)) .. i - 1; m(j): the top row of column j
//   l(k, j) = A(k, j) / d(k),  d(j) = A(j, j) - sum l(k, j) A(k, j)     k = m(j) .. j - 1
//   y(j) = F(j) - sum l(k, j) y(k)     k = m(j) .. j - 1
//   u(i) = y(i) / d(i) - sum l(i, j) u(j)     j = i + 1 .. n - 1, where m(j) <= i
//
// Terms are subtracted one by one, k and j ascending. SolveSkyline (solve_skyline.h) gives the same
// bits in less time; it uses this factorisation where there are no vector registers.
#pragma once

#include <cstdint>
#include <vector>

#include "skyline/column_counter.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// Factorises the columns first .. n - 1 of K in place. All columns before are finished.
// columns: counts these columns.
void FactorColumnsPlain(SkylineMatrix& K, std::int64_t first, ColumnCounter& columns);

// Computes y(first) .. y(n - 1) of L y = F in place. All y before are known.
void ReduceLoadPlain(const SkylineMatrix& K, std::int64_t first, std::vector<double>& F);

// Factorises K and reduces F, both in place; arguments as for FactorSkyline (factor_skyline.h).
// Inline: there is only one compiled copy of the two loops, so that the signs of NaNs are the same
// for all callers (factor_skyline.cpp).
inline void FactorSkylinePlain(SkylineMatrix& K, std::vector<double>& F, ColumnCounter& columns) {
  FactorColumnsPlain(K, 0, columns);
  ReduceLoadPlain(K, 0, F);
}

// Solves D L^T u = y. K: the factors. y: n. u: n, written completely.
void SubstituteBackPlain(const SkylineMatrix& K, const std::vector<double>& y,
                         std::vector<double>& u);

// Solves K u = F; arguments as for SolveSkyline (solve_skyline.h).
void SolveSkylinePlain(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                       const ProgressCallback& progress);

}  // namespace korvex
