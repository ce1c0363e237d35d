// The memory of K's values serves for one system after another; no second skyline is allocated. So
// K's non-zeros are listed first. If an infinity or NaN occurs, K is restored from the list.
#include "skyline/independent_systems.h"

#include <algorithm>
#include <cmath>

#include "platform/vector_bits.h"
#include "skyline/coupled_dofs.h"
#include "skyline/disjoint_sets.h"
#include "skyline/sparse_matrix.h"

namespace korvex {

namespace {

// Bytes for each equation in all other tables: sets, positions, loads, solutions, column heights.
constexpr std::uint64_t TableBytesPerEquation = 100;

// The same for every further load: its lane, and its y and u here and in a system.
constexpr std::uint64_t LoadBytesPerEquation = 5 * sizeof(double);

bool IsNegativeZero(double value) { return value == 0.0 && std::signbit(value); }

bool HasNegativeZero(const LoadedSystem& load) {
  return std::any_of(load.F->begin(), load.F->end(), IsNegativeZero);
}

// The equations of set s, ascending.
struct SetRange {
  const std::int32_t *begin, *end;
};
SetRange RangeOf(const SetList& list, std::size_t s) {
  return {list.members.data() + list.begins[s], list.members.data() + list.begins[s + 1]};
}

// The profile of a system: K's columns of its set, without the rows of other sets. No values.
void BuildSystemProfile(const SkylineMatrix& K, const SetRange& set, SkylineMatrix& part) {
  InitColumnHeights(part, static_cast<std::int32_t>(set.end - set.begin));
  for (const std::int32_t* j = set.begin; j < set.end; ++j) {
    const std::int32_t* top = std::lower_bound(set.begin, j, TopRow(K, *j));
    part.ColumnHeights[static_cast<std::size_t>(j - set.begin)] =
        static_cast<std::int32_t>(j - top) + 1;
  }
  ComputeDiagonalAddresses(part);
}

// What all systems together cost.
struct SystemCost {
  std::int64_t entries = 0;  // stored
  double units = 0.0;        // of work
};
SystemCost MeasureSystems(const SkylineMatrix& K, const SetList& list, std::size_t loads) {
  SystemCost cost;
  SkylineMatrix part;
  for (std::size_t s = 0; s + 1 < list.begins.size(); ++s) {
    BuildSystemProfile(K, RangeOf(list, s), part);
    cost.entries += part.SkylineSize;
    cost.units +=
        CountFactorUnits(part, 0, CountColumns(part)) + CountSubstitutionUnits(part, loads);
  }
  return cost;
}

// Finds the non-zeros of K and the sets of equations that they couple. Returns false if K must be
// solved as one system, or if the skylines of the systems do not have less than three quarters of
// K's entries: setting them up may then take more time than it saves.
bool FindSystems(const SkylineMatrix& K, std::size_t maxEntries, std::size_t loads,
                 SparseMatrix& sparse, SetList& list, WorkShare* work) {
  DisjointSets sets;
  InitSets(sets, static_cast<std::int32_t>(CountColumns(K)));
  if (!ListEntries(K, maxEntries, sparse, sets)) return false;
  ListSets(sets, list);
  const SystemCost cost = MeasureSystems(K, list, loads);
  const bool savesTime = 4 * cost.entries < 3 * K.SkylineSize;
  if (savesTime && work != nullptr) work->rest = cost.units;
  return savesTime;
}

// Sets the values of a system. places: [n] of each equation of K, its position in its set.
void FillSystem(const SparseMatrix& sparse, const SetRange& set,
                const std::vector<std::int32_t>& places, SkylineMatrix& part) {
  AllocateValues(part);
  for (std::int64_t c = 0; c < set.end - set.begin; ++c) {
    double* diagonal = Column(part, c);
    ForEntries(sparse, set.begin[c], [&](const SparseEntry& entry) {
      diagonal[c - places[static_cast<std::size_t>(entry.row)]] = entry.value;
    });
  }
}

// Whether K solved as one system gives this system the same bits, that is, whether its terms
// 0 * x with the other systems change nothing: all values are finite and no y / d, where the back
// substitution begins, is -0. An infinity or NaN of a factor reaches a pivot; one of y, or from a
// zero pivot, reaches u.
bool MatchesOneSystem(const std::vector<double>& pivots, const std::vector<double>& y,
                      const std::vector<double>& u) {
  for (std::size_t i = 0; i < y.size(); ++i) {
    if (!std::isfinite(pivots[i]) || !std::isfinite(u[i])) return false;
    if (IsNegativeZero(y[i] / pivots[i])) return false;
  }
  return true;
}

// The pivots lie far apart, each in a column of its own.
std::vector<double> ListPivots(const SkylineMatrix& factors) {
  std::vector<double> pivots;
  pivots.reserve(factors.DiagonalAddress.size());
  for (std::int64_t j = 0; j < CountColumns(factors); ++j) pivots.push_back(*Column(factors, j));
  return pivots;
}

// A load of K, and where its solution is collected until all systems have one.
struct CollectedLoad {
  LoadedSystem load;
  std::vector<double> y;                 // [n]
  bool isSame = true;                    // has the bits of K as one system, so far
  std::vector<double> systemY, systemU;  // of the system that is being solved
};

void GatherLoad(const SetRange& set, CollectedLoad& collected) {
  const auto n = static_cast<std::size_t>(set.end - set.begin);
  collected.systemY.resize(n);
  collected.systemU.resize(n);
  for (std::size_t i = 0; i < n; ++i) {
    collected.systemY[i] = (*collected.load.F)[static_cast<std::size_t>(set.begin[i])];
  }
}

void CollectSolution(const SetRange& set, CollectedLoad& collected) {
  for (const std::int32_t* j = set.begin; j < set.end; ++j) {
    const auto i = static_cast<std::size_t>(j - set.begin);
    collected.y[static_cast<std::size_t>(*j)] = collected.systemY[i];
    (*collected.load.u)[static_cast<std::size_t>(*j)] = collected.systemU[i];
  }
}

// Solves a system for the loads that are the same so far. factors: its matrix, on return
// factorised. Returns false if no load is the same after it.
bool SolveSystem(const SetRange& set, SkylineMatrix& factors, std::vector<CollectedLoad>& loads,
                 ColumnCounter& columns, int threads) {
  std::vector<LoadedSystem> parts;
  for (CollectedLoad& load : loads) {
    if (!load.isSame) continue;
    GatherLoad(set, load);
    parts.push_back({&load.systemY, &load.systemU});
  }
  FactorAndSolve(WidestVectorBits(), factors, parts, columns, threads);
  const std::vector<double> pivots = ListPivots(factors);
  bool isAnySame = false;
  for (CollectedLoad& load : loads) {
    if (!load.isSame) continue;
    load.isSame = MatchesOneSystem(pivots, load.systemY, load.systemU);
    CollectSolution(set, load);
    isAnySame = isAnySame || load.isSame;
  }
  return isAnySame;
}

// Sets K's values again from its non-zeros.
void RestoreValues(const SparseMatrix& sparse, SkylineMatrix& K) {
  AllocateValues(K);
  for (std::int64_t j = 0; j < CountColumns(K); ++j) {
    double* diagonal = Column(K, j);
    ForEntries(sparse, j, [&](const SparseEntry& entry) { diagonal[j - entry.row] = entry.value; });
  }
}

// Hands over y of the loads that are the same. Returns the others.
std::vector<LoadedSystem> TakeSolved(std::vector<CollectedLoad>& loads) {
  std::vector<LoadedSystem> others;
  for (CollectedLoad& load : loads) {
    if (load.isSame) {
      load.load.F->swap(load.y);
    } else {
      others.push_back(load.load);
    }
  }
  return others;
}

}  // namespace

std::size_t FindMaxEntries(const SkylineMatrix& K, std::size_t loads, std::uint64_t freeMemory) {
  const std::uint64_t bytes = TableBytesPerEquation + LoadBytesPerEquation * (loads - 1);
  const std::uint64_t tables = bytes * static_cast<std::uint64_t>(CountColumns(K));
  const std::uint64_t taken = std::min(freeMemory / 2, tables);
  return std::min(static_cast<std::uint64_t>(K.SkylineSize) / StoredPerNonZero,
                  (freeMemory / 2 - taken) / sizeof(SparseEntry));
}

std::vector<LoadedSystem> SolveIndependentSystems(SkylineMatrix& K,
                                                  const std::vector<LoadedSystem>& loads,
                                                  std::size_t maxEntries, ColumnCounter& columns,
                                                  int threads) {
  // Each column has at least its diagonal entry. Where memory is short, no table is allocated.
  if (maxEntries < K.ColumnHeights.size()) return loads;
  if (std::any_of(loads.begin(), loads.end(), HasNegativeZero)) return loads;
  SparseMatrix sparse;
  SetList list;
  if (!FindSystems(K, maxEntries, loads.size(), sparse, list, columns.work)) return loads;

  std::vector<CollectedLoad> collected;
  collected.reserve(loads.size());
  for (const LoadedSystem& load : loads) {
    collected.push_back({load, std::vector<double>(K.ColumnHeights.size()), true, {}, {}});
  }
  SkylineMatrix factors;
  factors.Values.swap(K.Values);
  bool isAnySame = true;
  for (std::size_t s = 0; isAnySame && s + 1 < list.begins.size(); ++s) {
    const SetRange set = RangeOf(list, s);
    BuildSystemProfile(K, set, factors);
    FillSystem(sparse, set, list.places, factors);
    isAnySame = SolveSystem(set, factors, collected, columns, threads);
  }
  K.Values.swap(factors.Values);
  std::vector<LoadedSystem> others = TakeSolved(collected);
  if (!others.empty()) RestoreValues(sparse, K);
  return others;
}

}  // namespace korvex
