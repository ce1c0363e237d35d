// A symmetric matrix in skyline storage: of each column, the part from its topmost coupled row
// down to the diagonal.
//
// Columns stand one after another in column order. Within column j the diagonal comes first and the
// entries follow upward: row i <= j is at DiagonalAddress[j] + (j - i). The topmost stored row is
// j - ColumnHeights[j] + 1; what lies above is zero and never stored. Of a symmetric pair (r, c)
// the entry in row min(r, c) of column max(r, c) stands for both.
#pragma once

#include <cstdint>
#include <vector>

namespace korvex {

struct SkylineMatrix {
  std::vector<std::int32_t> ColumnHeights;  // [n] stored entries of each column, diagonal included
  std::vector<std::int64_t> DiagonalAddress;  // [n] position of each diagonal entry in Values
  std::int64_t SkylineSize = 0;               // stored entries, the sum of ColumnHeights
  std::vector<double> Values;                 // [SkylineSize]
};

inline std::int64_t CountColumns(const SkylineMatrix& K) {
  return static_cast<std::int64_t>(K.ColumnHeights.size());
}

// The diagonal entry of column j; that of row i lies j - i behind it.
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

// Gives K n columns that hold their diagonal only.
void InitColumnHeights(SkylineMatrix& K, std::int32_t n);

// Raises columns so that every pair of the `count` equations `dofs` has a stored entry.
void RaiseColumns(SkylineMatrix& K, const std::int32_t* dofs, std::int32_t count);

// Computes DiagonalAddress and SkylineSize from ColumnHeights.
void ComputeDiagonalAddresses(SkylineMatrix& K);

// Allocates Values and sets them all to 0.0.
void AllocateValues(SkylineMatrix& K);

// Adds an element matrix.
// ke: n x n, row-major; only its upper triangle is read, row by row.
// g: n, the equations of its rows. Where an element repeats a node, the terms of its two dofs fall
// on the diagonal.
void ScatterElement(const double* ke, const std::int32_t* g, std::int32_t n, SkylineMatrix& K);

}  // namespace korvex
