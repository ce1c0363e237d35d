// The displacements of fixed dofs, as a support's penalty gives them, and what they do to the free.
//
//   u = (F - sum of the other K(i, j) u(j)) / 1e20
//
// Before the solution the sum is left out. Behind it, it makes u what support forces are read from
// (system/supports.h). What a support gives way to is seen where the structure is very stiff: K of
// 1e11 changes the displacements by 1e-9.
#pragma once

#include <vector>

#include "sparse/free_dofs.h"
#include "sparse/free_matrix.h"

namespace kvx {

// In all of these: F, u: NEQ of the model.

// u of the fixed dofs: F / 1e20.
void PrescribeFixed(const FreeDofs& dofs, const std::vector<double>& F, std::vector<double>& u);

// b: of the free dofs, F less what the fixed displacements u pull.
void MakeRightSide(const FreeDofs& dofs, const FixedRows& C, const std::vector<double>& F,
                   const std::vector<double>& u, double* b);

// u of the free dofs: x.
void TakeFree(const FreeDofs& dofs, const double* x, std::vector<double>& u);

// u of the fixed dofs, with the sum, from all others as they are.
void SettleFixed(const FreeDofs& dofs, const FixedRows& C, const std::vector<double>& F,
                 std::vector<double>& u);

}  // namespace kvx
