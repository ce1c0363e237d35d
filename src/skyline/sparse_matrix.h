// The non-zero entries of a skyline matrix, column by column:
//   column j: entries[begins[j]] .. entries[begins[j + 1] - 1], from the diagonal upward
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "skyline/disjoint_sets.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

struct SparseEntry {
  std::int32_t row;
  double value;
};

struct SparseMatrix {
  std::vector<std::size_t> begins;  // [n + 1] where each column begins, then the number of entries
  std::deque<SparseEntry> entries;  // a deque: growing it copies nothing
};

// Lists the non-zero entries of K and joins the equations that they couple.
// sparse: empty on entry.
// sets: of K's n equations.
// Returns false, with lists and sets incomplete, if an entry is -0, infinite or NaN, or if there
// are more than maxEntries non-zeros.
bool ListEntries(const SkylineMatrix& K, std::size_t maxEntries, SparseMatrix& sparse,
                 DisjointSets& sets);

// Calls f for each non-zero of column j, from the diagonal upward.
template <typename OneEntry>
void ForEntries(const SparseMatrix& sparse, std::int64_t j, const OneEntry& f) {
  const std::size_t begin = sparse.begins[static_cast<std::size_t>(j)];
  const std::size_t end = sparse.begins[static_cast<std::size_t>(j) + 1];
  auto entry = sparse.entries.begin() + static_cast<std::ptrdiff_t>(begin);
  for (std::size_t e = begin; e < end; ++e, ++entry) f(*entry);
}

}  // namespace korvex
