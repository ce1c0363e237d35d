// The entries of a skyline matrix that are not zero.
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
  std::vector<std::size_t> begins;  // [n + 1] where each column's entries begin, then their number
  std::deque<SparseEntry> entries;  // column by column, upward; no vector, which grows by copies
};

// Lists the entries of K that are not +0 and joins the equations that they couple.
// sets: of K's equations. False, the lists unfinished, if an entry is -0 or not finite, or if there
// are more than maxEntries.
bool ListEntries(const SkylineMatrix& K, std::size_t maxEntries, SparseMatrix& sparse,
                 DisjointSets& sets);

// Calls f for the entries of column j, upward.
template <typename OneEntry>
void ForEntries(const SparseMatrix& sparse, std::int64_t j, const OneEntry& f) {
  const std::size_t begin = sparse.begins[static_cast<std::size_t>(j)];
  const std::size_t end = sparse.begins[static_cast<std::size_t>(j) + 1];
  auto entry = sparse.entries.begin() + static_cast<std::ptrdiff_t>(begin);
  for (std::size_t e = begin; e < end; ++e, ++entry) f(*entry);
}

}  // namespace korvex
