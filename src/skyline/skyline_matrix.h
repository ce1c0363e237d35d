// A symmetric matrix in skyline storage (Jennings 1966): each column is stored from its topmost
// coupled row down to the diagonal.
//
//   A(i, j), i <= j, is Values[DiagonalAddress[j] + (j - i)]: the diagonal entry first, then upward
//   TopRow(j) = j - ColumnHeights[j] + 1; entries above it are zero and not stored
//   A(j, i) = A(i, j), stored once
#pragma once

#include <cstdint>
#include <vector>

#include "base/zeroed_memory.h"

namespace korvex {

using MatrixValues = std::vector<double, ZeroedMemory<double>>;

struct SkylineMatrix {
  std::vector<std::int32_t> ColumnHeights;  // [n] stored entries of each column, diagonal included
  std::vector<std::int64_t> DiagonalAddress;  // [n] position of each diagonal entry
  std::int64_t SkylineSize = 0;               // stored entries, the sum of ColumnHeights
  MatrixValues Values;                        // [SkylineSize]
};

inline std::int64_t CountColumns(const SkylineMatrix& K) {
  return static_cast<std::int64_t>(K.ColumnHeights.size());
}

// The diagonal entry of column j; row i is at [j - i].
inline double* Column(SkylineMatrix& K, std::int64_t j) {
  return K.Values.data() + K.DiagonalAddress[static_cast<std::size_t>(j)];
}
inline const double* Column(const SkylineMatrix& K, std::int64_t j) {
  return K.Values.data() + K.DiagonalAddress[static_cast<std::size_t>(j)];
}

// The topmost stored row of column j.
inline std::int64_t TopRow(const SkylineMatrix& K, std::int64_t j) {
  return j - K.ColumnHeights[static_cast<std::size_t>(j)] + 1;
}

// Gives K n columns of height 1: the diagonal entry alone.
void InitColumnHeights(SkylineMatrix& K, std::int32_t n);

// Raises column heights so that every pair of the equations dofs[0 .. count - 1] has a stored
// entry. dofs: the equations of an element, in any order; count >= 1.
void RaiseColumns(SkylineMatrix& K, const std::int32_t* dofs, std::int32_t count);

// Computes DiagonalAddress and SkylineSize from ColumnHeights.
void ComputeDiagonalAddresses(SkylineMatrix& K);

// Allocates Values and sets them all to 0.0.
void AllocateValues(SkylineMatrix& K);

// Adds an element matrix to K.
// ke: n x n, row-major, global axes; only the upper triangle is read, row by row.
// g: n, the equations of its rows. If an element repeats a node, ke's term between the two equal
//    equations is added to the diagonal once.
void ScatterElement(const double* ke, const std::int32_t* g, std::int32_t n, SkylineMatrix& K);

}  // namespace korvex
