// The sums that form the stiffness of a membrane or plate part.
//
// All matrices are row-major, in the part's local dofs: u, v, drilling or w, rx, ry per node. A
// part adds one product per integration point.
#pragma once

#include <array>
#include <cstdint>

#include "base/matrix.h"

namespace korvex {

// K += s B^T D B, formed as s (B^T (D B)). K: Columns x Columns; B: Rows x Columns; D: Rows x Rows.
template <std::int32_t Rows, std::int32_t Columns>
void AddStiffnessProduct(const double* B, const double* D, double s, double* K) {
  std::array<double, static_cast<std::size_t>(Rows) * Columns> Bt, DB;
  std::array<double, static_cast<std::size_t>(Columns) * Columns> BtDB;
  MatTranspose(Bt.data(), B, Rows, Columns);
  MatMultiply(DB.data(), D, B, Rows, Rows, Columns);
  MatMultiply(BtDB.data(), Bt.data(), DB.data(), Columns, Rows, Columns);
  MatScale(BtDB.data(), BtDB.data(), s, Columns, Columns);
  MatAdd(K, K, BtDB.data(), Columns, Columns);
}

// K += s b^T b. K: n x n; b: n.
void AddOuterProduct(const double* b, std::int32_t n, double s, double* K);

// The drilling penalty divided by G TK. It penalises the difference between the drilling rotation
// and the in-plane rotation of the membrane. The literature uses about 1; these elements use 10.
inline constexpr double DrillingFactor = 10.0;

// Returns the drilling penalty per area, DrillingFactor G TK with G = E / (2 (1 + Mu)).
double DrillingPenalty(double E, double Mu, double TK);

// Adds Km to the u and v rows and columns of K.
// Km: 2 * nodes square, u, v per node; K: 3 * nodes square, u, v, drilling per node.
void AddMembranePart(const double* Km, std::int32_t nodes, double* K);

}  // namespace korvex
