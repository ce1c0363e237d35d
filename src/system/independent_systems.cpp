// See independent_systems.h.
//
// Looking through all entries of a wide plate takes a tenth of the time of its factorisation in
// vectors. Most structures do not fall apart, and a look at the rows of each column where elements
// couple it tells that, often with the first columns. Only then are the entries listed that are not
// zero; K's memory is used for one system after the other, and, should an infinity arise, filled
// with K once more.
#include "system/independent_systems.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <deque>

#include "model/model.h"
#include "platform/vector_bits.h"
#include "system/equation_sets.h"
#include "system/factor_skyline.h"
#include "system/substitute_back.h"

namespace korvex {

namespace {

// Every so many columns one is asked for the share of its entries that are not zero. A prime, so
// that all dofs of nodes have their turn.
constexpr std::int64_t SampleDistance = 61;

// Entries that are looked at together, because zeros are the rule.
constexpr std::int64_t BlockEntries = 16;

// Entries of K for each that may be listed: the list, two numbers for each, takes up to an eighth
// of K's memory. Plates of less than 36 nodes in width have more; below 25 they would lose time.
constexpr std::uint64_t EntriesPerListed = 16;

// Bytes for an equation in all other tables: sets, places, loads, solutions, columns of a system.
constexpr std::uint64_t BytesPerEquation = 100;

// An entry that is not zero.
struct Entry {
  std::int32_t row;
  double value;
};

struct SparseMatrix {
  std::vector<std::size_t> begins;  // [n + 1] where each column's entries begin, then their number
  std::deque<Entry> entries;        // column by column, upward; no vector, which grows by copies
};

bool IsNegativeZero(double value) { return value == 0.0 && std::signbit(value); }

const double* Column(const SkylineMatrix& K, std::int64_t j) {
  return K.Values.data() + K.DiagonalAddress[static_cast<std::size_t>(j)];
}

std::int64_t CountColumns(const SkylineMatrix& K) {
  return static_cast<std::int64_t>(K.ColumnHeights.size());
}

constexpr auto Dofs = static_cast<std::size_t>(DofsPerNode);

// The dofs of nodes that entries couple, directly or by way of others, at whatever nodes.
struct CoupledDofs {
  std::array<unsigned, Dofs> masks;  // [dof] bit c: dof c is in its set
};

// Joins the sets of the dofs in `mask`.
void JoinDofs(unsigned mask, CoupledDofs& dofs) {
  for (std::size_t c = 0; c < Dofs; ++c) {
    if ((mask >> c & 1U) != 0U) mask |= dofs.masks[c];
  }
  for (std::size_t c = 0; c < Dofs; ++c) {
    if ((mask >> c & 1U) != 0U) dofs.masks[c] = mask;
  }
}

// The dofs of the rows first .. end - 1 whose entries in column j are not zero.
unsigned FindDofs(const double* column, std::int64_t j, std::int64_t first, std::int64_t end) {
  unsigned mask = 0;
  for (std::int64_t i = first; i < end; ++i) {
    mask |= static_cast<unsigned>(column[j - i] != 0.0) << static_cast<unsigned>(i % DofsPerNode);
  }
  return mask;
}

// Whether, by a sample, the entries that are not zero are few enough to be listed.
bool AreFew(const SkylineMatrix& K) {
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
  CoupledDofs dofs;
  for (std::size_t d = 0; d < Dofs; ++d) dofs.masks[d] = 1U << d;
  for (std::int64_t j = 0; j < CountColumns(K); ++j) {
    const double* column = Column(K, j);
    if (!(column[0] > 0.0)) return false;
    const std::int64_t top = TopRow(K, j);
    const unsigned mask = FindDofs(column, j, std::max(top, j - DofsPerNode), j) |
                          FindDofs(column, j, top, std::min(top + DofsPerNode, j));
    const auto d = static_cast<std::size_t>(j % DofsPerNode);
    if ((mask & ~dofs.masks[d]) == 0U) continue;
    JoinDofs(mask | 1U << d, dofs);
    if (dofs.masks[d] == (1U << Dofs) - 1U) return false;
  }
  return true;
}

// Whether all are +0: the only number whose bits are all zero.
bool AreZero(const double* values) {
  std::uint64_t any = 0;
  for (std::int64_t i = 0; i < BlockEntries; ++i) {
    std::uint64_t bits;
    std::memcpy(&bits, values + i, sizeof bits);
    any |= bits;
  }
  return any == 0;
}

// Appends the entries of column j that are not +0 and joins the sets of their rows. False if one is
// -0 or not finite.
bool ListColumn(const SkylineMatrix& K, std::int64_t j, SparseMatrix& sparse, EquationSets& sets) {
  const double* column = Column(K, j);
  const std::int64_t height = K.ColumnHeights[static_cast<std::size_t>(j)];
  for (std::int64_t h = 0; h < height;) {
    if (h + BlockEntries <= height && AreZero(column + h)) {
      h += BlockEntries;
      continue;
    }
    for (const std::int64_t end = std::min(h + BlockEntries, height); h < end; ++h) {
      const double value = column[h];
      if (IsNegativeZero(value) || !std::isfinite(value)) return false;
      if (value == 0.0) continue;
      const auto row = static_cast<std::int32_t>(j - h);
      sparse.entries.push_back({row, value});
      JoinSets(sets, row, static_cast<std::int32_t>(j));
    }
  }
  return true;
}

// The same for all columns. False, too, if there are more than maxEntries.
bool ListEntries(const SkylineMatrix& K, std::size_t maxEntries, SparseMatrix& sparse,
                 EquationSets& sets) {
  sparse.begins.reserve(K.ColumnHeights.size() + 1);
  for (std::int64_t j = 0; j < CountColumns(K); ++j) {
    sparse.begins.push_back(sparse.entries.size());
    if (!ListColumn(K, j, sparse, sets) || sparse.entries.size() > maxEntries) return false;
  }
  sparse.begins.push_back(sparse.entries.size());
  return true;
}

// The equations of set s, ascending.
struct SetRange {
  const std::int32_t *begin, *end;
};
SetRange RangeOf(const EquationList& list, std::size_t s) {
  return {list.equations.data() + list.begins[s], list.equations.data() + list.begins[s + 1]};
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
bool PaysOff(const SkylineMatrix& K, const EquationList& list) {
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
                 EquationList& list) {
  EquationSets sets;
  InitEquationSets(sets, static_cast<std::int32_t>(CountColumns(K)));
  if (!ListEntries(K, maxEntries, sparse, sets)) return false;
  ListSets(sets, list);
  return PaysOff(K, list);
}

// Calls f for the entries of column j.
template <typename OneEntry>
void ForEntries(const SparseMatrix& sparse, std::int64_t j, const OneEntry& f) {
  const std::size_t begin = sparse.begins[static_cast<std::size_t>(j)];
  const std::size_t end = sparse.begins[static_cast<std::size_t>(j) + 1];
  auto entry = sparse.entries.begin() + static_cast<std::ptrdiff_t>(begin);
  for (std::size_t e = begin; e < end; ++e, ++entry) f(*entry);
}

// Sets the values of the system of a set. places: of each equation of K, its place in its set.
void FillSystem(const SparseMatrix& sparse, const SetRange& set,
                const std::vector<std::int32_t>& places, SkylineMatrix& part) {
  AllocateValues(part);
  for (std::int64_t c = 0; c < set.end - set.begin; ++c) {
    double* diagonal = part.Values.data() + part.DiagonalAddress[static_cast<std::size_t>(c)];
    ForEntries(sparse, set.begin[c], [&](const Entry& entry) {
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
    const double pivot = Column(factors, static_cast<std::int64_t>(i))[0];
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
    double* diagonal = K.Values.data() + K.DiagonalAddress[static_cast<std::size_t>(j)];
    ForEntries(sparse, j, [&](const Entry& entry) { diagonal[j - entry.row] = entry.value; });
  }
}

}  // namespace

// The sample first: it is quicker.
bool MayFallApart(const SkylineMatrix& K) { return AreFew(K) && AreDofsApart(K); }

std::size_t FindMaxEntries(const SkylineMatrix& K, std::uint64_t freeMemory) {
  const std::uint64_t tables =
      BytesPerEquation * static_cast<std::uint64_t>(K.ColumnHeights.size());
  const std::uint64_t taken = std::min(freeMemory / 2, tables);
  return std::min(static_cast<std::uint64_t>(K.SkylineSize) / EntriesPerListed,
                  (freeMemory / 2 - taken) / sizeof(Entry));
}

bool SolveIndependentSystems(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                             std::size_t maxEntries, ColumnCounter& columns) {
  // Each column has its diagonal at least; where memory is short, no table is allocated.
  if (maxEntries < F.size()) return false;
  if (std::any_of(F.begin(), F.end(), IsNegativeZero)) return false;
  SparseMatrix sparse;
  EquationList list;
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
