// How well a column x solves A x = b, and the step of iterative refinement that betters it.
//
// With r = b - A x and f = |A| |x| + |b| by entries, x is the exact solution for a matrix and a
// right side whose entries differ by the share max r(i) / f(i): the componentwise backward error
// (Oettli & Prager 1964). Where f(i) is hardly more than roundings, |A|(i) |x| in norms is added
// (Arioli, Demmel & Duff 1989, sec. 2).
#pragma once

#include <vector>

#include "sparse/free_matrix.h"

namespace kvx {

struct ColumnQuality {
  double residual = 0.0;       // |r| / (|A| |x| + |b|), infinity norms
  double backwardError = 0.0;  // max r(i) / f(i)
};

struct QualityTable {
  std::vector<double> rowSums;  // [n] of |A|
  double norm = 0.0;            // the largest of them
  std::vector<double> weights;  // [n] max over the columns with x != 0 of f(i) / |x|, each with the
                                // sign of its x(i)
  std::vector<double> f;        // [n] of the last column
};

void BeginQuality(const UpperMatrix& A, QualityTable& table);

// r: n, written completely; may not be x or b.
ColumnQuality MeasureColumn(const UpperMatrix& A, const double* x, const double* b,
                            QualityTable& table, double* r);

// Raises the weights by the column that was measured last.
void RaiseWeights(const double* x, QualityTable& table);

// Replaces column x by x + d where that has a smaller backward error; d: the solution of A d = r.
// d is used up. Returns whether it has.
bool TakeStep(const UpperMatrix& A, const double* b, QualityTable& table, double* d, double* x,
              ColumnQuality& quality);

}  // namespace kvx
