#include "skyline/coupled_dofs.h"

#include <algorithm>
#include <array>

#include "base/dof_counts.h"
#include "skyline/disjoint_sets.h"

namespace korvex {

namespace {

// Every 61st column is sampled for its share of non-zeros. A prime number, so that the sample
// includes columns of all six dofs.
constexpr std::int64_t SampleDistance = 61;

// The dofs (bit d: dof d) of the rows first .. end - 1 that have a non-zero in column j.
unsigned FindDofs(const double* column, std::int64_t j, std::int64_t first, std::int64_t end) {
  unsigned mask = 0;
  for (std::int64_t i = first; i < end; ++i) {
    mask |= static_cast<unsigned>(column[j - i] != 0.0) << static_cast<unsigned>(i % DofsPerNode);
  }
  return mask;
}

// Whether the sampled columns have few enough non-zeros.
bool IsSparse(const SkylineMatrix& K) {
  std::uint64_t nonZeros = 0, stored = 0;
  for (std::int64_t j = 0; j < CountColumns(K); j += SampleDistance) {
    const double* column = Column(K, j);
    const std::int64_t height = K.ColumnHeights[static_cast<std::size_t>(j)];
    stored += static_cast<std::uint64_t>(height);
    nonZeros += static_cast<std::uint64_t>(
        std::count_if(column, column + height, [](double value) { return value != 0.0; }));
  }
  return StoredPerNonZero * nonZeros <= stored;
}

// Whether the dofs fall into two or more sets without a coupling entry between them.
// Only the six topmost rows of each column and the rows of its own node are read: an element
// couples its nodes to the lowest-numbered one, and a beam beside the plane of a plate couples the
// dofs of one node. SolveIndependentSystems finds couplings in other rows. A diagonal entry that is
// not positive mostly leads to infinities, which it cannot handle.
bool HasDecoupledDofs(const SkylineMatrix& K) {
  DisjointSets dofs;
  InitSets(dofs, DofsPerNode);
  std::array<unsigned, DofsPerNode> seen{};  // [d] bit c: dofs d and c are joined already
  for (std::int64_t j = 0; j < CountColumns(K); ++j) {
    const double* column = Column(K, j);
    if (!(column[0] > 0.0)) return false;
    const std::int64_t top = TopRow(K, j);
    const unsigned mask = FindDofs(column, j, std::max(top, j - DofsPerNode), j) |
                          FindDofs(column, j, top, std::min(top + DofsPerNode, j));
    const auto d = static_cast<std::int32_t>(j % DofsPerNode);
    const unsigned unseen = mask & ~seen[static_cast<std::size_t>(d)];
    if (unseen == 0) continue;
    seen[static_cast<std::size_t>(d)] |= unseen;
    for (std::int32_t c = 0; c < DofsPerNode; ++c) {
      if ((unseen >> static_cast<unsigned>(c) & 1U) != 0) JoinSets(dofs, d, c);
    }
    if (CountSets(dofs) == 1) return false;
  }
  return true;
}

}  // namespace

// The sample comes first because it is faster.
bool MayDecouple(const SkylineMatrix& K) { return IsSparse(K) && HasDecoupledDofs(K); }

}  // namespace korvex
