// The eigenvalues of a small symmetric matrix, for the zero-energy modes of elements.
#pragma once

#include <cstddef>
#include <vector>

namespace korvex::test {

// A: n x n, row-major, symmetric to rounding; its eigenvalues in ascending order, by cyclic Jacobi
// rotations (Golub & Van Loan 2013, sec. 8.5). Absolute errors are some 1e-15 of the largest.
std::vector<double> SymmetricEigenvalues(std::vector<double> A, std::size_t n);

}  // namespace korvex::test
