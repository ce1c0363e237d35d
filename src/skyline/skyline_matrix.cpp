#include "skyline/skyline_matrix.h"

#include <algorithm>

#include "base/release_vector.h"
#include "platform/prefault_memory.h"

namespace korvex {

void InitColumnHeights(SkylineMatrix& K, std::int32_t n) {
  K.ColumnHeights.assign(static_cast<std::size_t>(n), 1);
}

void RaiseColumns(SkylineMatrix& K, const std::int32_t* dofs, std::int32_t count) {
  const std::int32_t lowest = *std::min_element(dofs, dofs + count);
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int32_t height = dofs[i] - lowest + 1;
    std::int32_t& stored = K.ColumnHeights[static_cast<std::size_t>(dofs[i])];
    stored = std::max(stored, height);
  }
}

void ComputeDiagonalAddresses(SkylineMatrix& K) {
  K.DiagonalAddress.resize(K.ColumnHeights.size());
  K.SkylineSize = 0;
  for (std::size_t j = 0; j < K.ColumnHeights.size(); ++j) {
    K.DiagonalAddress[j] = K.SkylineSize;
    K.SkylineSize += K.ColumnHeights[j];
  }
}

void AllocateValues(SkylineMatrix& K) {
  const auto size = static_cast<std::size_t>(K.SkylineSize);
  if (size > K.Values.capacity()) {
    ReleaseVector(K.Values);  // first: memory may not hold the old values and the new
    K.Values.reserve(size);
    PrefaultMemory(K.Values.data(), size * sizeof(double));
    K.Values.resize(size);  // zero: the block is new
  } else {
    K.Values.assign(size, 0.0);
  }
}

void ScatterElement(const double* ke, const std::int32_t* g, std::int32_t n, SkylineMatrix& K) {
  for (std::int32_t r = 0; r < n; ++r) {
    for (std::int32_t c = r; c < n; ++c) {
      const std::int32_t hi = std::max(g[r], g[c]);
      const std::int32_t lo = std::min(g[r], g[c]);
      const std::int64_t diagonal = K.DiagonalAddress[static_cast<std::size_t>(hi)];
      K.Values[static_cast<std::size_t>(diagonal + (hi - lo))] += ke[r * n + c];
    }
  }
}

}  // namespace korvex
