// The stages of solve_skyline.h in the longest vectors that the processor has.
#include "system/solve_skyline.h"

#include <algorithm>

#include "platform/free_memory.h"
#include "platform/vector_bits.h"
#include "system/factor_skyline.h"
#include "system/independent_systems.h"
#include "system/substitute_back.h"

namespace korvex {

namespace {

// Below so many entries a factorisation takes less than a few milliseconds, and a look for
// independent systems a hundredth of it: a detail model has none, but there are thousands of them.
constexpr std::int64_t LargeSize = 200000;

// Entries of K for each that independent systems may list: the list takes up to an eighth of K's
// memory. Plates of less than 36 nodes in width have more, and not much to gain.
constexpr std::uint64_t EntriesPerListed = 16;

// So many entries independent systems may list; no more than half the free memory can hold.
std::size_t FindMaxEntries(const SkylineMatrix& K) {
  const std::uint64_t held = ReadFreeMemory() / 2 / ListedEntrySize;
  return std::min(static_cast<std::uint64_t>(K.SkylineSize) / EntriesPerListed, held);
}

}  // namespace

void SolveSkyline(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                  SolverProgress progress) {
  ColumnCounter columns = {progress, static_cast<std::int64_t>(F.size())};
  if (K.SkylineSize >= LargeSize && SolveIndependentSystems(K, F, u, FindMaxEntries(K), columns)) {
    return;
  }
  FactorSkyline(WidestVectorBits(), K, F, columns);
  SubstituteBack(K, F, u);
}

}  // namespace korvex
