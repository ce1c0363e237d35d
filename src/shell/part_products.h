// The sums that the stiffness of a membrane or plate part is made of.
#pragma once

#include <array>
#include <cstdint>

#include "base/matrix.h"

namespace korvex {

// K: Columns x Columns += s B^T D B, formed as s (B^T (D B)). B: Rows x Columns, D: Rows x Rows.
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

// K: n x n += s b^T b. b: n.
void AddOuterProduct(const double* b, std::int32_t n, double s, double* K);

// Multiple of the shear modulus times the thickness that penalises the difference between the
// drilling rotation and the rotation of the plane. The usual choice is about 1; this is the
// elements' own.
inline constexpr double DrillingFactor = 10.0;

// The drilling penalty per area, DrillingFactor G TK with G = E / (2 (1 + Mu)).
double DrillingPenalty(double E, double Mu, double TK);

// K: 3 nodes x 3 nodes (u, v, drilling per node) += Km: 2 nodes x 2 nodes (u, v per node).
void AddMembranePart(const double* Km, std::int32_t nodes, double* K);

}  // namespace korvex
