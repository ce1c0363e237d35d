// The sums that the stiffness of a membrane or plate part is made of.
#pragma once

#include <cstdint>

namespace korvex {

// K: columns x columns += s B^T D B, formed as s (B^T (D B)).
// B: rows x columns, D: rows x rows; rows at most 3, columns at most 12.
void AddStiffnessProduct(const double* B, const double* D, std::int32_t rows, std::int32_t columns,
                         double s, double* K);

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
