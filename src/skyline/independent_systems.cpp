// See independent_systems.h.
//
// The entries of K that are not zero are listed; its memory is used for one system after the other,
// and, should an infinity arise, filled with K once more.
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

// Bytes for an equation in all other tables: sets, places, loads, solutions, columns of a system.
constexpr std::uint64_t BytesPerEquation = 100;

bool IsNegativeZero(double value) { return value == 0.0 && std::signbit(value); }

// The equations of set s, ascending.
struct SetRange {
  const std::int32_t *begin, *end;
};
SetRange RangeOf(const SetList& list, std::size_t s) {
  return {list.members.data() + list.begins[s], list.members.data() + list.begins[s + 1]};
}

// The columns of a system: those of its set without the rows of other sets, and without values.
void ListColumns(const SkylineMatrix& K, const SetRange& set, SkylineMatrix& part) {
  InitColumnHeights(part, static_cast<std::int32_t>(set.end - set.begin));
  for (const std::int32_t* j = set.begin; j < set.end; ++j) {
    const std::int32_t* top = std::lower_bound(set.begin, j, TopRow(K, *j));
    part.ColumnHeights[static_cast<std::size_t>(j - set.begin)] =
        static_cast<std::int32_t>(j - top) + 1;
  }
  ComputeDiagonalAddresses(part);
}

// Whether the systems of the sets have less than three quarters of K's entries: setting them up may
// take longer than fewer save.
bool PaysOff(const SkylineMatrix& K, const SetList& list) {
  std::int64_t size = 0;
  SkylineMatrix part;
  for (std::size_t s = 0; s + 1 < list.begins.size(); ++s) {
    ListColumns(K, RangeOf(list, s), part);
    size += part.SkylineSize;
  }
  return 4 * size < 3 * K.SkylineSize;
}

// Finds the sets of K's equations that no entry couples, and its entries; false if K is to stay
// whole.
bool FindSystems(const SkylineMatrix& K, std::size_t maxEntries, SparseMatrix& sparse,
                 SetList& list) {
  DisjointSets sets;
  InitSets(sets, static_cast<std::int32_t>(CountColumns(K)));
  if (!ListEntries(K, maxEntries, sparse, sets)) return false;
  ListSets(sets, list);
  return PaysOff(K, list);
}

// Sets the values of the system of a set. places: of each equation of K, its place in its set.
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

// Whether zeros of other systems would have left this one as it is: everything is finite, and none
// of the quotients from which the back substitution begins is -0. What is not finite shows in the
// pivots, a zero pivot and what is not finite in y show in u.
bool IsSound(const SkylineMatrix& factors, const std::vector<double>& y,
             const std::vector<double>& u) {
  for (std::size_t i = 0; i < y.size(); ++i) {
    const double pivot = *Column(factors, static_cast<std::int64_t>(i));
    if (!std::isfinite(pivot) || !std::isfinite(u[i])) return false;
    if (IsNegativeZero(y[i] / pivot)) return false;
  }
  return true;
}

// Factors of a system of K, its load and its solution.
struct System {
  SkylineMatrix factors;
  std::vector<double> y, u;
};

// Solves the system of a set. F: K's; factors: the system's matrix before.
void SolveSystem(const SetRange& set, const std::vector<double>& F, ColumnCounter& columns,
                 System& system) {
  const auto n = static_cast<std::size_t>(set.end - set.begin);
  system.y.resize(n);
  system.u.resize(n);
  for (std::size_t i = 0; i < n; ++i) system.y[i] = F[static_cast<std::size_t>(set.begin[i])];
  FactorSkyline(WidestVectorBits(), system.factors, system.y, columns);
  SubstituteBack(system.factors, system.y, system.u);
}

// Sets K's values once more.
void RestoreValues(const SparseMatrix& sparse, SkylineMatrix& K) {
  AllocateValues(K);
  for (std::int64_t j = 0; j < CountColumns(K); ++j) {
    double* diagonal = Column(K, j);
    ForEntries(sparse, j, [&](const SparseEntry& entry) { diagonal[j - entry.row] = entry.value; });
  }
}

}  // namespace

std::size_t FindMaxEntries(const SkylineMatrix& K, std::uint64_t freeMemory) {
  const std::uint64_t tables = BytesPerEquation * static_cast<std::uint64_t>(CountColumns(K));
  const std::uint64_t taken = std::min(freeMemory / 2, tables);
  return std::min(static_cast<std::uint64_t>(K.SkylineSize) / EntriesPerListed,
                  (freeMemory / 2 - taken) / sizeof(SparseEntry));
}

bool SolveIndependentSystems(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                             std::size_t maxEntries, ColumnCounter& columns) {
  // Each column has its diagonal at least; where memory is short, no table is allocated.
  if (maxEntries < F.size()) return false;
  if (std::any_of(F.begin(), F.end(), IsNegativeZero)) return false;
  SparseMatrix sparse;
  SetList list;
  if (!FindSystems(K, maxEntries, sparse, list)) return false;

  System system;
  system.factors.Values.swap(K.Values);
  std::vector<double> y(F.size());
  bool isSound = true;
  for (std::size_t s = 0; isSound && s + 1 < list.begins.size(); ++s) {
    const SetRange set = RangeOf(list, s);
    ListColumns(K, set, system.factors);
    FillSystem(sparse, set, list.places, system.factors);
    SolveSystem(set, F, columns, system);
    isSound = IsSound(system.factors, system.y, system.u);
    for (const std::int32_t* j = set.begin; j < set.end; ++j) {
      y[static_cast<std::size_t>(*j)] = system.y[static_cast<std::size_t>(j - set.begin)];
      u[static_cast<std::size_t>(*j)] = system.u[static_cast<std::size_t>(j - set.begin)];
    }
  }
  K.Values.swap(system.factors.Values);
  if (isSound) {
    F.swap(y);
  } else {
    RestoreValues(sparse, K);
  }
  return isSound;
}

}  // namespace korvex
