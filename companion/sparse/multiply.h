// Products with the symmetric matrix of the free dofs, of whose rows each rank multiplies its own.
#pragma once

#include <vector>

#include "sparse/free_matrix.h"

namespace kvx {

// y = A x, and s = |A| |x| by entries. All n long; y and s are written completely.
void Multiply(const UpperMatrix& A, const double* x, double* y, double* s);

// The sums of the entries' magnitudes by rows: |A| (1, .., 1). The largest is the norm.
void SumRows(const UpperMatrix& A, std::vector<double>& sums);

// What another rank does for these two. work: 3 n numbers, made before.
void HelpMultiply(const UpperMatrix& A, std::vector<double>& work);
void HelpSumRows(const UpperMatrix& A, std::vector<double>& work);

}  // namespace kvx
