// An estimate of how far a solution may be off: | |A^-1| w |, infinity norm, for w >= 0, from a few
// solutions with A (Hager 1984; Higham 1988, alg. 4.1, of which one turn is taken).
//
// With w = f / |x| (column_quality.h) it is the relative error of x over its backward error. The
// estimate is a lower bound, and mostly within a factor of 3 of the value.
//
// The turn begins with x itself: its signs say which way the structure gives. Scattered signs are
// tried beside them, which find what the loads leave alone. The solutions are those of columns that
// the caller gives to its solver, beside others where it can.
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

// The right sides that it begins with.
inline constexpr std::size_t ModeColumns = 2;

// w: n numbers, each with the sign of x there. b: ModeColumns columns of n.
void MakeModeColumns(const std::vector<double>& w, double* b);

// x: the solutions for them; the larger one becomes the mode. b: n, the last right side.
void TakeModes(const double* x, std::size_t n, ConditionEstimate& estimate, double* b);

// x: the solution for that. The value is complete.
void TakeLastColumn(const std::vector<double>& w, const double* x, ConditionEstimate& estimate);

// The value of the first column alone, for solvers to whom a column costs much. Of random models it
// is mostly that of the whole estimate, and a quarter of it at worst. x: the solution for w as it
// is.
double EstimateFromSigns(const double* x, std::size_t n);

}  // namespace kvx
