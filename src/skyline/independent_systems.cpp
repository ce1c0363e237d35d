// The systems stand in the memory of K's values; no second skyline is allocated. So K's non-zeros
// are listed first. If an infinity or NaN occurs, K is restored from the list.
#include "skyline/independent_systems.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/vector_bits.h"
#include "skyline/coupled_dofs.h"
#include "skyline/disjoint_sets.h"
#include "skyline/reorder_load.h"
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

// The columns of the systems, one system behind the other: those of K without the rows of other
// sets. No values.
void BuildSystemsProfile(const SkylineMatrix& K, const SetList& list, SkylineMatrix& systems) {
  InitColumnHeights(systems, static_cast<std::int32_t>(CountColumns(K)));
  for (std::size_t s = 0; s + 1 < list.begins.size(); ++s) {
    const std::int32_t* const begin = list.members.data() + list.begins[s];
    const std::int32_t* const end = list.members.data() + list.begins[s + 1];
    for (const std::int32_t* j = begin; j < end; ++j) {
      const std::int32_t* top = std::lower_bound(begin, j, TopRow(K, *j));
      systems.ColumnHeights[static_cast<std::size_t>(j - list.members.data())] =
          static_cast<std::int32_t>(j - top) + 1;
    }
  }
  ComputeDiagonalAddresses(systems);
}

// Finds the non-zeros of K, the sets of equations that they couple, and the columns of the systems.
// Returns false if K must be solved as one system, or if the systems do not have less than three
// quarters of K's entries: setting them up may then take more time than it saves.
bool FindSystems(const SkylineMatrix& K, std::size_t maxEntries, SparseMatrix& sparse,
                 SetList& list, SkylineMatrix& systems) {
  DisjointSets sets;
  InitSets(sets, static_cast<std::int32_t>(CountColumns(K)));
  if (!ListEntries(K, maxEntries, sparse, sets)) return false;
  ListSets(sets, list);
  BuildSystemsProfile(K, list, systems);
  return 4 * systems.SkylineSize < 3 * K.SkylineSize;
}

// Sets the values of the systems. An equation lies as far above the diagonal as there are equations
// of its set between.
void FillSystems(const SparseMatrix& sparse, const SetList& list, SkylineMatrix& systems) {
  AllocateValues(systems);
  for (std::int64_t c = 0; c < CountColumns(systems); ++c) {
    double* diagonal = Column(systems, c);
    const std::int32_t j = list.members[static_cast<std::size_t>(c)];
    const std::int32_t place = list.places[static_cast<std::size_t>(j)];
    ForEntries(sparse, j, [&](const SparseEntry& entry) {
      diagonal[place - list.places[static_cast<std::size_t>(entry.row)]] = entry.value;
    });
  }
}

// Whether K solved as one system gives the systems the same bits, that is, whether the terms
// 0 * x between them change nothing: all values are finite and no y / d, where the back
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

// A load of K in the order of the systems' columns, and its solution.
struct OrderedLoad {
  std::vector<double> y, u;
};

// Factorises the systems and solves them for all loads.
void SolveSystems(const SetList& list, SkylineMatrix& systems,
                  const std::vector<LoadedSystem>& loads, std::vector<OrderedLoad>& ordered,
                  ColumnCounter& columns, int threads) {
  std::vector<LoadedSystem> parts;
  for (std::size_t k = 0; k < loads.size(); ++k) {
    ordered[k].u.resize(loads[k].F->size());
    GatherNumbers(list.members, *loads[k].F, ordered[k].y);
    parts.push_back({&ordered[k].y, &ordered[k].u});
  }
  FactorAndSolve(WidestVectorBits(), systems, parts, columns, threads);
}

// Hands over y and u of the loads that have the bits of K as one system. Returns the others.
std::vector<LoadedSystem> TakeSolved(const SetList& list, const SkylineMatrix& systems,
                                     const std::vector<LoadedSystem>& loads,
                                     const std::vector<OrderedLoad>& ordered) {
  const std::vector<double> pivots = ListPivots(systems);
  std::vector<LoadedSystem> others;
  for (std::size_t k = 0; k < loads.size(); ++k) {
    if (MatchesOneSystem(pivots, ordered[k].y, ordered[k].u)) {
      ScatterNumbers(list.members, ordered[k].y, *loads[k].F);
      ScatterNumbers(list.members, ordered[k].u, *loads[k].u);
    } else {
      others.push_back(loads[k]);
    }
  }
  return others;
}

// Sets K's values again from its non-zeros.
void RestoreValues(const SparseMatrix& sparse, SkylineMatrix& K) {
  AllocateValues(K);
  for (std::int64_t j = 0; j < CountColumns(K); ++j) {
    double* diagonal = Column(K, j);
    ForEntries(sparse, j, [&](const SparseEntry& entry) { diagonal[j - entry.row] = entry.value; });
  }
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
                                                  int threads, SkylineFactor* factor) {
  // Each column has at least its diagonal entry. Where memory is short, no table is allocated.
  if (maxEntries < K.ColumnHeights.size()) return loads;
  if (std::any_of(loads.begin(), loads.end(), HasNegativeZero)) return loads;
  SparseMatrix sparse;
  SetList list;
  SkylineMatrix systems;
  if (!FindSystems(K, maxEntries, sparse, list, systems)) return loads;
  if (columns.work != nullptr) {
    columns.work->rest = CountFactorUnits(systems, 0, CountColumns(systems)) +
                         CountSubstitutionUnits(systems, loads.size());
  }

  std::vector<OrderedLoad> ordered(loads.size());
  systems.Values.swap(K.Values);
  FillSystems(sparse, list, systems);
  SolveSystems(list, systems, loads, ordered, columns, threads);
  std::vector<LoadedSystem> others = TakeSolved(list, systems, loads, ordered);
  if (others.empty() && factor != nullptr) {
    factor->columns = std::move(systems);
    factor->equations = std::move(list.members);
    return others;
  }
  K.Values.swap(systems.Values);
  if (!others.empty()) RestoreValues(sparse, K);
  return others;
}

}  // namespace korvex
