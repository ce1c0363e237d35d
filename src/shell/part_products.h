// The sums that form the stiffness of a membrane or plate part.
//
// All matrices are row-major, in the part's local dofs: u, v, drilling or w, rx, ry per node. A
// part adds one product per integration point. Number: as in bilinear_map.h.
#pragma once

#include <cstdint>

#include "base/matrix.h"

namespace korvex {

// Which entries of a symmetric stiffness are formed: all, or those of the pairs of nodes a <= b,
// with which the others are known. Entries that are not formed keep what they had.
enum class Extent { Whole, UpperNodes };

// The first column of row `row` that is formed, with so many dofs per node. Number: that of the
// matrix, so that units compiled for different processors do not share it.
template <Extent extent, typename Number>
constexpr std::int32_t FirstColumn(std::int32_t row, std::int32_t dofsPerNode) {
  return extent == Extent::Whole ? 0 : row / dofsPerNode * dofsPerNode;
}

// K += s B^T D B, formed as s (B^T (D B)). K: Columns x Columns, `NodeDofs` of each node; B: Rows x
// Columns; D: Rows x Rows.
template <std::int32_t Rows, std::int32_t Columns, std::int32_t NodeDofs,
          Extent extent = Extent::Whole, typename Number>
inline void AddStiffnessProduct(const Number* B, const Number* D, Number s, Number* K) {
  Number DB[Rows * Columns];
  MatMultiply(DB, D, B, Rows, Rows, Columns);
  for (std::int32_t r = 0; r < Columns; ++r) {
    for (std::int32_t c = FirstColumn<extent, Number>(r, NodeDofs); c < Columns; ++c) {
      Number sum = 0.0;
      for (std::int32_t k = 0; k < Rows; ++k) sum += B[Columns * k + r] * DB[Columns * k + c];
      K[Columns * r + c] = K[Columns * r + c] + s * sum;
    }
  }
}

// K += s b^T b. K: n x n, `NodeDofs` of each node; b: n.
template <std::int32_t n, std::int32_t NodeDofs, Extent extent = Extent::Whole, typename Number>
inline void AddOuterProduct(const Number* b, Number s, Number* K) {
  for (std::int32_t r = 0; r < n; ++r) {
    for (std::int32_t c = FirstColumn<extent, Number>(r, NodeDofs); c < n; ++c) {
      K[n * r + c] += s * (b[c] * b[r]);
    }
  }
}

// The drilling penalty divided by G TK. It penalises the difference between the drilling rotation
// and the in-plane rotation of the membrane. The literature uses about 1; these elements use 10.
inline constexpr double DrillingFactor = 10.0;

// Returns the drilling penalty per area, DrillingFactor G TK with G = E / (2 (1 + Mu)).
template <typename Number>
inline Number DrillingPenalty(Number E, Number Mu, Number TK) {
  return E * 0.5 / (Mu + 1.0) * DrillingFactor * TK;
}

// Adds Km to the u and v rows and columns of K.
// Km: 2 * Nodes square, u, v per node; K: 3 * Nodes square, u, v, drilling per node.
template <std::int32_t Nodes, Extent extent = Extent::Whole, typename Number>
inline void AddMembranePart(const Number* Km, Number* K) {
  constexpr std::int32_t n = 2 * Nodes;
  const auto place = [](std::int32_t dof) { return 3 * (dof / 2) + dof % 2; };
  for (std::int32_t a = 0; a < n; ++a) {
    for (std::int32_t b = FirstColumn<extent, Number>(a, 2); b < n; ++b) {
      K[place(a) * 3 * Nodes + place(b)] += Km[n * a + b];
    }
  }
}

}  // namespace korvex
