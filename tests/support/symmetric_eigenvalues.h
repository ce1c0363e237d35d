// The eigenvalues of a small symmetric matrix, for the zero-energy modes of elements.
#pragma once

#include <cstddef>
#include <vector>

namespace korvex::test {

// The eigenvalues of A in ascending order, by cyclic Jacobi rotations (Golub & Van Loan 2013, sec.
// 8.5). Their absolute errors are about 1e-15 of the largest eigenvalue.
// A: n x n, row-major, symmetric except for rounding errors.
std::vector<double> SymmetricEigenvalues(std::vector<double> A, std::size_t n);

}  // namespace korvex::test
