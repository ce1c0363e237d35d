// The stiffness of a model without its supports' penalty, factorised column by column, with a look
// at each pivot: what moves without resistance shows there.
//
//   K = L D L^T;  D(j) = min v^T K v  with v(j) = 1 and all later dofs at rest
//
// So D(j) / K(j, j) says what is left of the stiffness of dof j when all earlier dofs may follow.
// It does not depend on units, and not on how stiff other parts are. Where nothing is left, the
// minimiser v is the mechanism: v(a) = -K(a, a)^-1 K(a, j) for the earlier dofs a.
// Dofs that are fixed have their rows and columns zero.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "model/model.h"

namespace kvx {

// Why a dof has no equation: a support, or a motion that was found free there.
inline constexpr char Supported = 1;
inline constexpr char Loose = 2;

struct FreeSystem {
  korvex::Model model;           // its stiffness: the factors of the columns that are done
  std::vector<char> fixed;       // [NEQ] 0, Supported or Loose
  std::vector<double> diagonal;  // [NEQ] of the stiffness before the factorisation
};

// Builds the elements of the model from its tables, and numbers its equations. Throws a Stop where
// a reference leads outside its table, or memory is too small.
void BuildElements(korvex::Model& model);

// Fills `diagonal` from the element matrices. take: called for each element, in the order of the
// tables (four-node shells, three-node shells, beams), with whether its matrix is finite; matrices
// that are not are left out.
void SumDiagonal(FreeSystem& system, const std::function<void(bool isFinite)>& take);

// Makes the profile, allocates the matrix and factorises it by the solver's own routine. Throws a
// Stop where memory is too small.
void Factorise(FreeSystem& system);

// The first column from `first` whose pivot is below `share` of its diagonal, or not finite; NEQ if
// there is none.
std::int64_t FindSmallPivot(const FreeSystem& system, std::int64_t first, double share);

// Sets the columns from `first` back to the stiffness, to be factorised one by one.
void RestoreColumns(FreeSystem& system, std::int64_t first);

// Factorises column j; all columns before are done. Returns the pivot.
double FactoriseColumn(FreeSystem& system, std::int64_t j);

// The displacements v of the minimum at column j, which is factorised. v: NEQ, written completely.
void FindMode(const FreeSystem& system, std::int64_t j, std::vector<double>& v);

// Fixes dof j: column j is factorised, later ones are not.
void FixDof(FreeSystem& system, std::int64_t j);

}  // namespace kvx
