// The solutions of A x = b for any number of columns with a factor of A: in blocks, each with one
// step of iterative refinement, and with an estimate of the condition of all of them together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "sparse/column_quality.h"
#include "sparse/condition.h"
#include "sparse/free_matrix.h"

namespace kvx {

// Columns that are solved at a time: the factors are read once for all of them.
inline constexpr std::size_t BlockColumns = 32;

struct ColumnWork {
  std::size_t count = 0;
  // Replaces b by x, for columns that stand one after the other.
  std::function<void(std::int32_t columns, double* x)> solve;
  std::function<void(std::size_t column, double* b)> make;  // writes b, n numbers
  // Writes b anew, which may depend on x a little: what supports give way to, for the refinement.
  std::function<void(std::size_t column, const double* x, double* b)> settle;
  std::function<void(std::size_t column, const double* x, const ColumnQuality&)> take;
};

struct RefinedColumns {
  int steps = 0;                // columns that took the step
  ConditionEstimate condition;  // where all columns are 0: of A itself, for w = |A| (1, .., 1)
};

// A: one row at least. Each column is made, settled and taken once, in their order.
// Throws a Stop where memory is too small.
void SolveRefined(const UpperMatrix& A, const ColumnWork& work, RefinedColumns& refined);

// Bytes of its work space.
std::uint64_t CountColumnBytes(std::size_t n, std::size_t columns);

}  // namespace kvx
