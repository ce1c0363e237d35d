// An estimate of how far a solution may be off: | |A^-1| w |, infinity norm, for w >= 0, from a few
// solutions with A (Hager 1984; Higham 1988, alg. 4.1, of which one turn is taken).
//
// With w = f / |x| (column_quality.h) it is the relative error of x over its backward error. The
// estimate is a lower bound, and mostly within a factor of 3 of the value.
//
// The turn begins with x itself: its signs say which way the structure gives. Scattered signs are
// tried beside them, which find what the loads leave alone. Its second half asks for the value at
// one dof; which one, a probe says, which is solved with the loads, so that the factor need not be
// read a third time. The solutions are those of columns that the caller gives to its solver.
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

// The right side of the probe. sums: n row sums of |A|, which stand for the w that is not known
// yet. b: n, written completely.
void MakeProbe(const std::vector<double>& sums, double* b);

// The dof where the probe's solution x is largest, or its first NaN: n numbers, one at least.
std::size_t FindPeak(const double* x, std::size_t n);

// The columns of the turn.
inline constexpr std::size_t ModeColumns = 3;

// w: n numbers, each with the sign of x there. b: ModeColumns columns of n, written completely.
void MakeModeColumns(const std::vector<double>& w, std::size_t peak, double* b);

// x: the solutions for them. The larger one of those with signs becomes the mode.
void TakeModes(const std::vector<double>& w, const double* x, ConditionEstimate& estimate);

// The value of the first column alone, for solvers to whom a column costs much. Of random models it
// is mostly that of the whole estimate, and a quarter of it at worst. x: the solution for w as it
// is.
double EstimateFromSigns(const double* x, std::size_t n);

}  // namespace kvx
