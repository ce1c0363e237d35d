// The routines of systems.h for any vector length.
//
// Columns are factorised in groups, the dofs of a node, from left to right:
//
//              columns i ..      group: columns first ..
//                 |                  |
//                 |              +--------+  commonTop: all columns of the group reach this row
//              +-----+           | A(k,j) |
//              |l(k,i)|  . . . . |        |
//              +-----+           |        |
//                 \    . . . . . | A(i,j) |  tile: TileHeight rows of the group, in registers
//                                +--------+  row `first`
//                                  \ block|  the group's own rows
//
// Some columns of a group may reach higher than others, and some entries of a tile may have terms
// that others do not have: such terms are taken one by one from memory. Where the equations are the
// dofs of nodes, there are none.
#pragma once

#include "skyline/panel/systems.h"
#include "skyline/panel/vectors-inl.h"

namespace korvex {
namespace {

// The arrays with their vectors. Row k of column j is at Entry(j, k), D(k) at Entry(k, k).
template <typename Width>
struct VectorSystems {
  using Vector = VectorOf<Width>;
  SystemLanes arrays;

  std::int64_t Top(std::int64_t j) const { return j - arrays.columnHeights[j] + 1; }
  double* Entry(std::int64_t j, std::int64_t k) const {
    return arrays.values + (arrays.diagonalAddress[j] + (j - k)) * Width::Lanes;
  }
  double* LoadAt(std::int64_t j) const { return arrays.loads + j * Width::Lanes; }
};

// Columns first .. first + Columns - 1.
template <int Columns>
struct ColumnGroup {
  std::int64_t first;
  double* base[Columns];  // row k of column first + q is at base[q] - k * Lanes
  std::int64_t tops[Columns];
  std::int64_t top;        // of the highest column
  std::int64_t commonTop;  // the first row that all columns reach, at most `first`
};

template <typename Width, int Columns>
ColumnGroup<Columns> DescribeGroup(const VectorSystems<Width>& systems, std::int64_t first) {
  ColumnGroup<Columns> group;
  group.first = group.top = first;
  group.commonTop = 0;
  for (int q = 0; q < Columns; ++q) {
    const std::int64_t j = first + q, top = systems.Top(j);
    group.base[q] = systems.Entry(j, j) + j * Width::Lanes;
    group.tops[q] = top;
    if (top < group.top) group.top = top;
    const std::int64_t reached = top < first ? top : first;
    if (reached > group.commonTop) group.commonTop = reached;
  }
  return group;
}

inline std::int64_t Higher(std::int64_t a, std::int64_t b) { return a > b ? a : b; }
inline std::int64_t Lower(std::int64_t a, std::int64_t b) { return a < b ? a : b; }

// A(i, j) -= l(k, i) A(k, j) for the rows k = begin .. end - 1, in memory.
// columnI, columnJ: row k is at columnI - k * Lanes.
template <typename Width>
void ReduceEntry(const double* columnI, double* columnJ, std::int64_t i, std::int64_t begin,
                 std::int64_t end) {
  VectorOf<Width> a = Load<Width>(columnJ - i * Width::Lanes);
  for (std::int64_t k = begin; k < end; ++k) {
    a = a - Load<Width>(columnI - k * Width::Lanes) * Load<Width>(columnJ - k * Width::Lanes);
  }
  Store<Width>(columnJ - i * Width::Lanes, a);
}

// Reduces row i in the columns of the group that reach it, one after the other.
template <typename Width, int Columns>
void ReduceSingleRow(const VectorSystems<Width>& systems, const ColumnGroup<Columns>& group,
                     std::int64_t i) {
  const double* columnI = systems.Entry(i, 0);
  const std::int64_t topI = systems.Top(i);
  for (int q = 0; q < Columns; ++q) {
    if (i < group.tops[q]) continue;
    ReduceEntry<Width>(columnI, group.base[q], i, Higher(topI, group.tops[q]), i);
  }
}

// The multipliers l(k, j) of a group's rows from commonTop on, until they take the place of A(k,
// j): `Columns` vectors for each row, divided in ascending order. Divisions take long: they are
// done one by one beside the products of the tiles below.
template <typename Width, int Columns>
struct Multipliers {
  double* vectors;         // of row commonTop
  std::int64_t commonTop;  // of the group
  std::int64_t reduced;    // vectors that hold A(k, j), and may be divided
  std::int64_t divided;    // vectors that hold l(k, j)

  double* Row(std::int64_t k) const { return vectors + (k - commonTop) * Columns * Width::Lanes; }
};

// Divides the next vector, if there is one.
template <typename Width, int Columns>
[[gnu::always_inline]] inline void DivideNext(const VectorSystems<Width>& systems,
                                              Multipliers<Width, Columns>& multipliers) {
  if (multipliers.divided == multipliers.reduced) return;
  double* const vector = multipliers.vectors + multipliers.divided * Width::Lanes;
  const std::int64_t k = multipliers.commonTop + multipliers.divided / Columns;
  Store<Width>(vector, Load<Width>(vector) / Load<Width>(systems.Entry(k, k)));
  ++multipliers.divided;
}

// Reduces the rows row .. row + Rows - 1, which all columns of the group reach.
template <typename Width, int Rows, int Columns>
void ReduceGroupTile(const VectorSystems<Width>& systems, const ColumnGroup<Columns>& group,
                     std::int64_t row, Multipliers<Width, Columns>& multipliers) {
  constexpr std::int64_t L = Width::Lanes;
  const double* rows[Rows];  // l(k, row + r) is at rows[r] - k * Lanes
  std::int64_t tops[Rows];
  std::int64_t common = group.commonTop;  // the first row whose terms all entries of the tile have
  for (int r = 0; r < Rows; ++r) {
    rows[r] = systems.Entry(row + r, 0);
    tops[r] = systems.Top(row + r);
    common = Higher(common, Lower(tops[r], row));
  }
  for (int r = 0; r < Rows; ++r) {
    for (int q = 0; q < Columns; ++q) {
      const std::int64_t top = Higher(tops[r], group.tops[q]);
      if (top < common) ReduceEntry<Width>(rows[r], group.base[q], row + r, top, common);
    }
  }

  VectorOf<Width> a[Rows][Columns];
  Repeat<Rows>([&](auto r) KORVEX_INLINE {
    Repeat<Columns>([&](auto q)
                        KORVEX_INLINE { a[r][q] = Load<Width>(group.base[q] - (row + r) * L); });
  });
  for (std::int64_t k = common; k < row; ++k) {
    DivideNext(systems, multipliers);
    VectorOf<Width> above[Columns];
    Repeat<Columns>([&](auto q) KORVEX_INLINE { above[q] = Load<Width>(group.base[q] - k * L); });
    Repeat<Rows>([&](auto r) KORVEX_INLINE {
      const VectorOf<Width> l = Load<Width>(rows[r] - k * L);
      Repeat<Columns>([&](auto q) KORVEX_INLINE { a[r][q] = a[r][q] - l * above[q]; });
    });
  }
  Repeat<Rows>([&](auto r) KORVEX_INLINE {
    Repeat<r>([&](auto s) KORVEX_INLINE {  // the rows of the tile above row r
      if (row + s < tops[r]) return;
      const VectorOf<Width> l = Load<Width>(rows[r] - (row + s) * L);
      Repeat<Columns>([&](auto q) KORVEX_INLINE { a[r][q] = a[r][q] - l * a[s][q]; });
    });
    Repeat<Columns>([&](auto q) KORVEX_INLINE {
      Store<Width>(group.base[q] - (row + r) * L, a[r][q]);
      Store<Width>(multipliers.Row(row + r) + q * L, a[r][q]);
    });
  });
  multipliers.reduced += Rows * Columns;
}

// pivot -= l t, except where l is 0: -0 - (-0 * 4) would change a pivot of -0 to +0.
template <typename Width>
[[gnu::always_inline]] inline void SubtractFromPivot(const VectorOf<Width>& l,
                                                     const VectorOf<Width>& t,
                                                     VectorOf<Width>& pivot) {
  pivot = l != 0.0 ? pivot - l * t : pivot;
}

// Divides row k of column q by d(k) and subtracts its terms from the block: those of the pivot, and
// of the columns that stand after q and reach the row, whose own row k is not divided yet.
template <typename Width, int Columns>
void DivideEntry(const VectorSystems<Width>& systems, const ColumnGroup<Columns>& group, int q,
                 std::int64_t k) {
  constexpr std::int64_t L = Width::Lanes;
  double* const entry = group.base[q] - k * L;
  const VectorOf<Width> t = Load<Width>(entry), l = t / Load<Width>(systems.Entry(k, k));
  Store<Width>(entry, l);
  double* const diagonal = group.base[q] - (group.first + q) * L;
  VectorOf<Width> pivot = Load<Width>(diagonal);
  SubtractFromPivot<Width>(l, t, pivot);
  Store<Width>(diagonal, pivot);
  for (int after = q + 1; after < Columns; ++after) {
    if (k < group.tops[after] || group.first + q < group.tops[after]) continue;
    double* const blockEntry = group.base[after] - (group.first + q) * L;
    Store<Width>(blockEntry, Load<Width>(blockEntry) - l * Load<Width>(group.base[after] - k * L));
  }
}

// The same for the rows that all columns reach, of which there is one at least, and whose
// multipliers are known.
template <typename Width, int Columns>
void DivideRows(const ColumnGroup<Columns>& group, const Multipliers<Width, Columns>& multipliers) {
  constexpr std::int64_t L = Width::Lanes;
  VectorOf<Width> block[Columns][Columns];  // [p][q], p <= q
  Repeat<Columns>([&](auto q) KORVEX_INLINE {
    Repeat<q + 1>([&](auto p) KORVEX_INLINE {
      block[p][q] = Load<Width>(group.base[q] - (group.first + p) * L);
    });
  });
  for (std::int64_t k = group.commonTop; k < group.first; ++k) {
    VectorOf<Width> l[Columns];
    Repeat<Columns>([&](auto q) KORVEX_INLINE {
      const VectorOf<Width> t = Load<Width>(group.base[q] - k * L);
      l[q] = Load<Width>(multipliers.Row(k) + q * L);
      Repeat<q>([&](auto p) KORVEX_INLINE { block[p][q] = block[p][q] - l[p] * t; });
      SubtractFromPivot<Width>(l[q], t, block[q][q]);
      Store<Width>(group.base[q] - k * L, l[q]);
    });
  }
  Repeat<Columns>([&](auto q) KORVEX_INLINE {
    Repeat<q + 1>([&](auto p) KORVEX_INLINE {
      Store<Width>(group.base[q] - (group.first + p) * L, block[p][q]);
    });
  });
}

// The rows of the group itself, from its first.
template <typename Width, int Columns>
void FinishBlock(const VectorSystems<Width>& systems, const ColumnGroup<Columns>& group) {
  for (int p = 0; p < Columns; ++p) {
    for (int q = p + 1; q < Columns; ++q) {
      if (group.first + p >= group.tops[q]) DivideEntry(systems, group, q, group.first + p);
    }
  }
}

// y(j) = F(j) - sum l(k, j) y(k) for the columns of the group.
template <typename Width, int Columns>
void ReduceLoads(const VectorSystems<Width>& systems, const ColumnGroup<Columns>& group) {
  constexpr std::int64_t L = Width::Lanes;
  VectorOf<Width> y[Columns];
  Repeat<Columns>([&](auto q) KORVEX_INLINE {
    y[q] = Load<Width>(systems.LoadAt(group.first + q));
    for (std::int64_t k = group.tops[q]; k < group.commonTop; ++k) {
      y[q] = y[q] - Load<Width>(group.base[q] - k * L) * Load<Width>(systems.LoadAt(k));
    }
  });
  for (std::int64_t k = group.commonTop; k < group.first; ++k) {
    const VectorOf<Width> above = Load<Width>(systems.LoadAt(k));
    Repeat<Columns>(
        [&](auto q) KORVEX_INLINE { y[q] = y[q] - Load<Width>(group.base[q] - k * L) * above; });
  }
  Repeat<Columns>([&](auto q) KORVEX_INLINE {
    Repeat<q>([&](auto p) KORVEX_INLINE {
      const std::int64_t k = group.first + p;
      if (k >= group.tops[q]) y[q] = y[q] - Load<Width>(group.base[q] - k * L) * y[p];
    });
    Store<Width>(systems.LoadAt(group.first + q), y[q]);
  });
}

template <typename Width, int Columns>
void FactorGroup(const VectorSystems<Width>& systems, std::int64_t first) {
  constexpr std::int64_t Rows = Width::TileHeight;
  const ColumnGroup<Columns> group = DescribeGroup<Width, Columns>(systems, first);
  Multipliers<Width, Columns> multipliers = {systems.arrays.multipliers, group.commonTop, 0, 0};
  std::int64_t row = group.top;
  for (; row < group.commonTop; ++row) ReduceSingleRow(systems, group, row);
  for (; row + Rows <= first; row += Rows) {
    ReduceGroupTile<Width, Rows>(systems, group, row, multipliers);
  }
  for (; row < first; ++row) ReduceGroupTile<Width, 1>(systems, group, row, multipliers);
  while (multipliers.divided < multipliers.reduced) DivideNext(systems, multipliers);

  for (std::int64_t k = group.top; k < group.commonTop; ++k) {
    for (int q = 0; q < Columns; ++q) {
      if (k >= group.tops[q]) DivideEntry(systems, group, q, k);
    }
  }
  if (group.commonTop < first) DivideRows(group, multipliers);
  FinishBlock(systems, group);
  ReduceLoads(systems, group);
}

template <typename Width>
void FactorSystems(const SystemLanes& arrays, std::int64_t first, std::int64_t end) {
  const VectorSystems<Width> systems = {arrays};
  constexpr std::int64_t Columns = Width::GroupColumns;
  std::int64_t j = first;
  for (; j + Columns <= end; j += Columns) FactorGroup<Width, Columns>(systems, j);
  for (; j < end; ++j) FactorGroup<Width, 1>(systems, j);
}

template <typename Width>
void SubstituteSystems(const SystemLanes& arrays, const std::int64_t* reach) {
  const VectorSystems<Width> systems = {arrays};
  for (std::int64_t i = arrays.n - 1; i >= 0; --i) {
    VectorOf<Width> u = Load<Width>(systems.LoadAt(i)) / Load<Width>(systems.Entry(i, i));
    for (std::int64_t j = i + 1; j <= reach[i]; ++j) {
      if (i < systems.Top(j)) continue;
      u = u - Load<Width>(systems.Entry(j, i)) * Load<Width>(systems.LoadAt(j));
    }
    Store<Width>(systems.LoadAt(i), u);
  }
}

}  // namespace
}  // namespace korvex
