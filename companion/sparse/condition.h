// An estimate of how far a solution may be off: | |A^-1| w |, infinity norm, for w >= 0, from a few
// solutions with A (Hager 1984; Higham 1988, alg. 4.1, of which one turn is taken).
//
// With w = f / |x| (column_quality.h) it is the relative error of x over its backward error. The
// estimate is a lower bound, and mostly within a factor of 3 of the value.
//
// The solutions are those of columns that the caller gives to its solver, beside others: each costs
// a column, not a run through the factors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kvx {

struct ConditionEstimate {
  double value = 0.0;        // infinite or NaN where the solutions are
  std::vector<double> mode;  // [n] A^-1 w s with signs s: where the value is large, nearly what the
                             // structure resists least
};

// The right sides that it begins with, which do not depend on w.
inline constexpr std::size_t FirstColumns = 2;

// b: FirstColumns columns of n.
void MakeFirstColumns(std::size_t n, double* b);

// x: the solutions for them. b: n, the next right side.
void TakeFirstColumns(const std::vector<double>& w, const double* x, ConditionEstimate& estimate,
                      double* b);

// x: the solution for that; becomes the mode. b: n, the last right side.
void TakeMode(const double* x, std::size_t n, ConditionEstimate& estimate, double* b);

// x: the solution for that. The value is complete.
void TakeLastColumn(const std::vector<double>& w, const double* x, ConditionEstimate& estimate);

}  // namespace kvx
