// See coupled_dofs.h.
#include "skyline/coupled_dofs.h"

#include <algorithm>
#include <array>

#include "base/dof_counts.h"
#include "skyline/disjoint_sets.h"

namespace korvex {

namespace {

// Every so many columns one is asked for the share of its entries that are not zero. A prime, so
// that all dofs of nodes have their turn.
constexpr std::int64_t SampleDistance = 61;

// The dofs of the rows first .. end - 1 whose entries in column j are not zero.
unsigned FindDofs(const double* column, std::int64_t j, std::int64_t first, std::int64_t end) {
  unsigned mask = 0;
  for (std::int64_t i = first; i < end; ++i) {
    mask |= static_cast<unsigned>(column[j - i] != 0.0) << static_cast<unsigned>(i % DofsPerNode);
  }
  return mask;
}

// Whether, by a sample, the entries that are not zero are few enough to be listed.
bool IsSparse(const SkylineMatrix& K) {
  std::uint64_t entries = 0, stored = 0;
  for (std::int64_t j = 0; j < CountColumns(K); j += SampleDistance) {
    const double* column = Column(K, j);
    const std::int64_t height = K.ColumnHeights[static_cast<std::size_t>(j)];
    stored += static_cast<std::uint64_t>(height);
    entries += static_cast<std::uint64_t>(
        std::count_if(column, column + height, [](double value) { return value != 0.0; }));
  }
  return EntriesPerListed * entries <= stored;
}

// Whether no entries are seen that couple all dofs of nodes. Elements couple a column in the
// topmost rows and, as beams beside the plane of a plate do, in those of its own node. What couples
// in other rows only is seen when the entries are listed. A diagonal that is not positive mostly
// ends in infinities.
bool AreDofsApart(const SkylineMatrix& K) {
  DisjointSets dofs;
  InitSets(dofs, DofsPerNode);
  std::array<unsigned, DofsPerNode> seen{};  // [d] bit c: the dofs d and c have been joined
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

// The sample first: it is quicker.
bool MayDecouple(const SkylineMatrix& K) { return IsSparse(K) && AreDofsApart(K); }

}  // namespace korvex
