// The memory of K's values serves for one system after another; no second skyline is allocated. So
// K's non-zeros are listed first. If an infinity or NaN occurs, K is restored from the list.
#include "skyline/independent_systems.h"

#include <algorithm>
#include <cmath>

#include "platform/vector_bits.h"
#include "skyline/coupled_dofs.h"
#include "skyline/disjoint_sets.h"
#include "skyline/factor_skyline.h"
#include "skyline/sparse_matrix.h"
#include "skyline/substitute_back.h"

namespace korvex {

namespace {

// Bytes for each equation in all other tables: sets, positions, loads, solutions, column heights.
constexpr std::uint64_t TableBytesPerEquation = 100;

bool IsNegativeZero(double value) { return value == 0.0 && std::signbit(value); }

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

// Whether the skylines of the systems have less than three quarters of K's entries. Otherwise
// setting them up may take more time than it saves.
bool SavesTime(const SkylineMatrix& K, const SetList& list) {
  std::int64_t size = 0;
  SkylineMatrix part;
  for (std::size_t s = 0; s + 1 < list.begins.size(); ++s) {
    BuildSystemProfile(K, RangeOf(list, s), part);
    size += part.SkylineSize;
  }
  return 4 * size < 3 * K.SkylineSize;
}

// Finds the non-zeros of K and the sets of equations that they couple. Returns false if K must be
// solved as one system.
bool FindSystems(const SkylineMatrix& K, std::size_t maxEntries, SparseMatrix& sparse,
                 SetList& list) {
  DisjointSets sets;
  InitSets(sets, static_cast<std::int32_t>(CountColumns(K)));
  if (!ListEntries(K, maxEntries, sparse, sets)) return false;
  ListSets(sets, list);
  return SavesTime(K, list);
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
bool MatchesOneSystem(const SkylineMatrix& factors, const std::vector<double>& y,
                      const std::vector<double>& u) {
  for (std::size_t i = 0; i < y.size(); ++i) {
    const double pivot = *Column(factors, static_cast<std::int64_t>(i));
    if (!std::isfinite(pivot) || !std::isfinite(u[i])) return false;
    if (IsNegativeZero(y[i] / pivot)) return false;
  }
  return true;
}

// A system: its matrix, on solution its factors; its load, on solution reduced; its solution.
struct System {
  SkylineMatrix factors;
  std::vector<double> y, u;
};

// Solves a system. set: its equations. F: the load of K. system.factors: its matrix on entry.
void SolveSystem(const SetRange& set, const std::vector<double>& F, ColumnCounter& columns,
                 System& system) {
  const auto n = static_cast<std::size_t>(set.end - set.begin);
  system.y.resize(n);
  system.u.resize(n);
  for (std::size_t i = 0; i < n; ++i) system.y[i] = F[static_cast<std::size_t>(set.begin[i])];
  FactorSkyline(WidestVectorBits(), system.factors, system.y, columns);
  SubstituteBack(system.factors, system.y, system.u);
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

std::size_t FindMaxEntries(const SkylineMatrix& K, std::uint64_t freeMemory) {
  const std::uint64_t tables = TableBytesPerEquation * static_cast<std::uint64_t>(CountColumns(K));
  const std::uint64_t taken = std::min(freeMemory / 2, tables);
  return std::min(static_cast<std::uint64_t>(K.SkylineSize) / StoredPerNonZero,
                  (freeMemory / 2 - taken) / sizeof(SparseEntry));
}

bool SolveIndependentSystems(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                             std::size_t maxEntries, ColumnCounter& columns) {
  // Each column has at least its diagonal entry. Where memory is short, no table is allocated.
  if (maxEntries < F.size()) return false;
  if (std::any_of(F.begin(), F.end(), IsNegativeZero)) return false;
  SparseMatrix sparse;
  SetList list;
  if (!FindSystems(K, maxEntries, sparse, list)) return false;

  System system;
  system.factors.Values.swap(K.Values);
  std::vector<double> y(F.size());
  bool isSame = true;
  for (std::size_t s = 0; isSame && s + 1 < list.begins.size(); ++s) {
    const SetRange set = RangeOf(list, s);
    BuildSystemProfile(K, set, system.factors);
    FillSystem(sparse, set, list.places, system.factors);
    SolveSystem(set, F, columns, system);
    isSame = MatchesOneSystem(system.factors, system.y, system.u);
    for (const std::int32_t* j = set.begin; j < set.end; ++j) {
      y[static_cast<std::size_t>(*j)] = system.y[static_cast<std::size_t>(j - set.begin)];
      u[static_cast<std::size_t>(*j)] = system.u[static_cast<std::size_t>(j - set.begin)];
    }
  }
  K.Values.swap(system.factors.Values);
  if (isSame) {
    F.swap(y);
  } else {
    RestoreValues(sparse, K);
  }
  return isSame;
}

}  // namespace korvex
