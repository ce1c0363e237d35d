#include "skyline/sparse_matrix.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace korvex {

namespace {

// Entries tested together: most entries are zero.
constexpr std::int64_t BlockEntries = 16;

// Whether all entries of a block are +0, the only number whose bits are all zero.
bool AreZero(const double* values) {
  std::uint64_t any = 0;
  for (std::int64_t i = 0; i < BlockEntries; ++i) {
    std::uint64_t bits;
    std::memcpy(&bits, values + i, sizeof bits);
    any |= bits;
  }
  return any == 0;
}

// Appends the non-zeros of column j and joins equation j with their rows. Returns false if an entry
// is -0, infinite or NaN.
bool ListColumn(const SkylineMatrix& K, std::int64_t j, SparseMatrix& sparse, DisjointSets& sets) {
  const double* column = Column(K, j);
  const std::int64_t height = K.ColumnHeights[static_cast<std::size_t>(j)];
  for (std::int64_t h = 0; h < height;) {
    if (h + BlockEntries <= height && AreZero(column + h)) {
      h += BlockEntries;
      continue;
    }
    for (const std::int64_t end = std::min(h + BlockEntries, height); h < end; ++h) {
      const double value = column[h];
      if (!std::isfinite(value)) return false;
      if (value == 0.0) {
        if (std::signbit(value)) return false;
        continue;
      }
      const auto row = static_cast<std::int32_t>(j - h);
      sparse.entries.push_back({row, value});
      JoinSets(sets, row, static_cast<std::int32_t>(j));
    }
  }
  return true;
}

}  // namespace

bool ListEntries(const SkylineMatrix& K, std::size_t maxEntries, SparseMatrix& sparse,
                 DisjointSets& sets) {
  sparse.begins.reserve(K.ColumnHeights.size() + 1);
  for (std::int64_t j = 0; j < CountColumns(K); ++j) {
    sparse.begins.push_back(sparse.entries.size());
    if (!ListColumn(K, j, sparse, sets) || sparse.entries.size() > maxEntries) return false;
  }
  sparse.begins.push_back(sparse.entries.size());
  return true;
}

}  // namespace korvex
