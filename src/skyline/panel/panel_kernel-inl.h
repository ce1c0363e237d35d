// The panel routine for any vector length. panel.h draws panel, slice, tile, strip, diagonal block.
//
// Reducing rows (ReducePanel):
//   1. Read them from K's columns (ReadRows).
//   2. For each slice from the top of the panel down, and each tile of these rows in it or below:
//      A(i, j) -= A(k, i) A(k, j), k in the slice (UpdateTileRows).
//   3. Divide them by their pivots, l = A(k, j) / d(k), subtract l A(k, j) from pivot j and l y(k)
//      from load j, write l to K's columns (FinishStrip).
//   4. Subtract their terms from the diagonal block (UpdateDiagonalBlock).
// Then:
//   5. Finish the rows of the diagonal block one by one (FinishPanel).
//
// A very tall panel does not fit in memory. Its rows are reduced in windows, each as a panel of its
// own, and its terms are subtracted from all rows below before the next (MoveWindow).
//
// Lanes whose column does not reach row k are masked, not padded with zeros: 0 * infinity is a NaN.
#pragma once

#include "skyline/panel/panel_rows-inl.h"

namespace korvex {
namespace {

// Entries of several rows in a strip: [row][vector].
template <typename Width, int Rows, int Vectors>
using Entries = VectorOf<Width>[Rows][Vectors];

// Finds the lanes of a strip whose columns reach row k.
// tops: the top rows of the strip's columns.
template <typename Width, int Vectors>
[[gnu::always_inline]] inline void FindMask(const double* tops, double k,
                                            MaskOf<Width> (&mask)[Vectors]) {
  Repeat<Vectors>([&](auto v)
                      KORVEX_INLINE { mask[v] = Load<Width>(tops + v * Width::Lanes) <= k; });
}

// entries -= row * multiplier, in the first Active vectors of a strip; if Masked, only in the lanes
// of the mask.
template <typename Width, bool Masked, int Active, int Vectors>
[[gnu::always_inline]] inline void SubtractTerm(const VectorOf<Width> (&row)[Vectors],
                                                const double* multiplier,
                                                const MaskOf<Width> (&mask)[Vectors],
                                                VectorOf<Width> (&entries)[Vectors]) {
  Repeat<Active>([&](auto v) KORVEX_INLINE {
    const VectorOf<Width> reduced = entries[v] - Width::Multiply(row[v], multiplier);
    if constexpr (Masked) {
      entries[v] = mask[v] ? reduced : entries[v];
    } else {
      entries[v] = reduced;
    }
  });
}

// Subtracts `count` terms from each row of a, in the first Active vectors of a strip.
// last: [Rows] for each row its multiplier A(k, i) of the last term; last + t: of the t-th before.
// w: row k of the slice for the first term, from the strip's first column on.
template <typename Width, bool Masked, int Active, int Rows, int Vectors>
[[gnu::always_inline]] inline void SubtractTerms(const double* const (&last)[Rows], const double* w,
                                                 std::int64_t count,
                                                 const MaskOf<Width> (&mask)[Vectors],
                                                 Entries<Width, Rows, Vectors>& a) {
  // Unrolled: with short vectors, loop counting would take a sixth of all instructions.
#pragma GCC unroll 4
  for (std::int64_t t = count - 1; t >= 0; --t, w += PanelColumns) {
    VectorOf<Width> row[Vectors];
    Repeat<Active>([&](auto v) KORVEX_INLINE { row[v] = Load<Width>(w + v * Width::Lanes); });
    Repeat<Rows>([&](auto q) KORVEX_INLINE {
      SubtractTerm<Width, Masked, Active>(row, last[q] + t, mask, a[q]);
    });
  }
}

// Subtracts from each row q of a tile the terms with the rows p < q of the same tile.
// l: [TileRows] for each row its multiplier of the tile's first row; that of row p is at l - p.
// first: the tile's first row.
template <typename Width, bool Masked, int Vectors>
[[gnu::always_inline]] inline void SubtractTileTerms(const double* const (&l)[TileRows],
                                                     const double* tops, std::int64_t first,
                                                     Entries<Width, TileRows, Vectors>& a) {
  Repeat<TileRows>([&](auto p) KORVEX_INLINE {
    MaskOf<Width> mask[Vectors];
    if constexpr (Masked) FindMask<Width>(tops, static_cast<double>(first + p), mask);
    Repeat<TileRows>([&](auto q) KORVEX_INLINE {
      if constexpr (q > p) SubtractTerm<Width, Masked, Vectors>(a[p], l[q] - p, mask, a[q]);
    });
  });
}

// Rows of the panel that are reduced together: the dofs of a node.
struct Tile {
  std::int64_t first, count;    // rows first .. first + count - 1, count <= TileRows
  double* rows;                 // count x PanelColumns, row-major
  std::int64_t base[TileRows];  // ColumnBase of the columns first .. first + count - 1
  std::int64_t tops[TileRows];  // top rows of these columns
  std::int64_t commonTop;       // first row that all of them reach
};

inline Tile DescribeTile(const SkylineArrays& K, std::int64_t first, std::int64_t count,
                         double* rows) {
  Tile tile;
  tile.first = first;
  tile.count = count;
  tile.rows = rows;
  tile.commonTop = 0;
  for (std::int64_t q = 0; q < count; ++q) {
    tile.base[q] = ColumnBase(K, first + q);
    tile.tops[q] = TopRow(K, first + q);
    tile.commonTop = Max(tile.commonTop, tile.tops[q]);
  }
  return tile;
}

// Subtracts the terms k = k0 .. k1 - 1 from row q of a tile, in the strip from column c. General
// path: masks every term.
template <typename Width, int Vectors>
void UpdateRow(const SkylineArrays& K, const Panel& panel, const Slice& slice, const Tile& tile,
               std::int64_t c, std::int64_t q, std::int64_t k0, std::int64_t k1) {
  if (k0 >= k1) return;
  double* target = tile.rows + q * PanelColumns + c;
  VectorOf<Width> a[Vectors];
  LoadStrip<Width>(target, a);
  for (std::int64_t k = k0; k < k1; ++k) {
    VectorOf<Width> row[Vectors];
    LoadStrip<Width>(RowOf(slice, k) + c, row);
    MaskOf<Width> mask[Vectors];
    FindMask<Width>(panel.tops + c, static_cast<double>(k), mask);
    SubtractTerm<Width, true, Vectors>(row, K.values + (tile.base[q] - k), mask, a);
  }
  StoreStrip<Width>(target, a);
}

// Subtracts the terms k >= k0 of a slice from a tile of six rows, in the strip from column c. If
// the tile lies in the slice, its own rows' terms come last. k0: all six columns of the tile reach
// it.
template <typename Width, int Vectors>
void UpdateTile(const SkylineArrays& K, const Panel& panel, const Steps& steps, const Slice& slice,
                const Tile& tile, std::int64_t c, std::int64_t k0) {
  const std::int64_t k1 = Min(slice.end, tile.first);
  Entries<Width, TileRows, Vectors> a;
  const auto forEntries = [&](const auto& f) KORVEX_INLINE {
    Repeat<TileRows>([&](auto q) KORVEX_INLINE {
      Repeat<Vectors>([&](auto v) KORVEX_INLINE {
        f(tile.rows + q * PanelColumns + c + v * Width::Lanes, a[q][v]);
      });
    });
  };
  forEntries([](const double* p, VectorOf<Width>& entry) KORVEX_INLINE { entry = Load<Width>(p); });
  const double* l[TileRows];
  const auto pointAt = [&](std::int64_t k) KORVEX_INLINE {
    Repeat<TileRows>([&](auto q) KORVEX_INLINE { l[q] = K.values + (tile.base[q] - k); });
  };
  const double* tops = panel.tops + c;
  MaskOf<Width> mask[Vectors];
  // Lanes whose column does not reach the tile need no mask: their values are not used.
  int s = 0;
  for (; steps.rows[s + 1] < tile.first + TileRows; ++s) {
    const std::int64_t end = Min(steps.rows[s + 1], k1);
    if (k0 >= end) continue;
    pointAt(end - 1);
    FindMask<Width>(tops, static_cast<double>(steps.rows[s]), mask);
    Repeat<Vectors>([&](auto v) KORVEX_INLINE {
      if (steps.activeVectors[s] == v + 1) {
        SubtractTerms<Width, true, v + 1>(l, RowOf(slice, k0) + c, end - k0, mask, a);
      }
    });
    k0 = end;
  }
  if (k0 < k1) {
    pointAt(k1 - 1);
    SubtractTerms<Width, false, Vectors>(l, RowOf(slice, k0) + c, k1 - k0, mask, a);
  }
  if (tile.first < slice.end) {
    pointAt(tile.first);
    if (steps.rows[s] > tile.first) {
      SubtractTileTerms<Width, true, Vectors>(l, tops, tile.first, a);
    } else {
      SubtractTileTerms<Width, false, Vectors>(l, tops, tile.first, a);
    }
  }
  forEntries([](double* p, VectorOf<Width>& entry) KORVEX_INLINE { Store<Width>(p, entry); });
}

// Subtracts the terms of a slice from a tile, in the strip from column c.
template <typename Width, int Vectors>
void UpdateStrip(const SkylineArrays& K, const Panel& panel, const Slice& slice, const Tile& tile,
                 std::int64_t c) {
  const std::int64_t strip = c / (Vectors * Width::Lanes);
  const Steps& steps = Vectors == Width::NarrowVectors ? panel.narrow[strip] : panel.wide[strip];
  if (steps.rows[0] >= tile.first + tile.count) return;

  const std::int64_t k0 = Max(slice.first, steps.rows[0]);
  if (tile.count < TileRows || tile.commonTop > tile.first) {
    for (std::int64_t q = 0; q < tile.count; ++q) {
      UpdateRow<Width, Vectors>(K, panel, slice, tile, c, q, Max(k0, tile.tops[q]),
                                Min(slice.end, tile.first + q));
    }
    return;
  }
  for (std::int64_t q = 0; q < TileRows && k0 < tile.commonTop; ++q) {
    UpdateRow<Width, Vectors>(K, panel, slice, tile, c, q, Max(k0, tile.tops[q]),
                              Min(slice.end, tile.commonTop));
  }
  UpdateTile<Width, Vectors>(K, panel, steps, slice, tile, c, Max(k0, tile.commonTop));
}

// Subtracts the terms of a slice from a tile.
template <typename Width>
void UpdateTileRows(const SkylineArrays& K, const Panel& panel, const Slice& slice,
                    const Tile& tile) {
  constexpr std::int64_t Wide = Width::WideVectors * Width::Lanes;
  constexpr std::int64_t Narrow = Width::NarrowVectors * Width::Lanes;
  // In the diagonal block, only columns from the tile on are needed.
  const std::int64_t skipped = Max(0, tile.first - panel.first);
  if (panel.isRagged || skipped >= Narrow) {
    for (std::int64_t c = skipped / Narrow * Narrow; c < PanelColumns; c += Narrow) {
      UpdateStrip<Width, Width::NarrowVectors>(K, panel, slice, tile, c);
    }
  } else {
    for (std::int64_t c = 0; c < PanelColumns; c += Wide) {
      UpdateStrip<Width, Width::WideVectors>(K, panel, slice, tile, c);
    }
  }
}

// l = t / d(k), pivots -= l t, load -= l y(k), for row k of a strip; if Masked, only for columns
// that reach row k. A zero multiplier must not touch the pivot: -0 - (-0 * 4) would change a pivot
// of -0 to +0. t: the strip's row before the division. pivotK, loadK: d(k), y(k). l: the quotients,
// written completely.
template <typename Width, bool Masked, int Vectors>
[[gnu::always_inline]] inline void ScaleRow(const double* t, const double* tops, std::int64_t k,
                                            double pivotK, double loadK, double* l,
                                            VectorOf<Width> (&pivots)[Vectors],
                                            VectorOf<Width> (&load)[Vectors]) {
  MaskOf<Width> isStored[Vectors];
  if constexpr (Masked) FindMask<Width>(tops, static_cast<double>(k), isStored);
  Repeat<Vectors>([&](auto v) KORVEX_INLINE {
    const auto entry = Load<Width>(t + v * Width::Lanes);
    const VectorOf<Width> multiplier = entry / pivotK;
    const VectorOf<Width> reducedLoad = load[v] - multiplier * loadK;
    MaskOf<Width> isTerm = multiplier != 0.0;
    if constexpr (Masked) isTerm &= isStored[v];
    pivots[v] = isTerm ? pivots[v] - multiplier * entry : pivots[v];
    if constexpr (Masked) {
      load[v] = isStored[v] ? reducedLoad : load[v];
    } else {
      load[v] = reducedLoad;
    }
    Store<Width>(l + v * Width::Lanes, multiplier);
  });
}

// Divides the rows of a slice by their pivots and writes them to K's columns, in the strip from
// column c. The slice keeps the rows before the division, which later terms need.
template <typename Width>
void FinishStrip(const SkylineArrays& K, const Slice& slice, std::int64_t c, Panel& panel) {
  constexpr int Vectors = Width::NarrowVectors;
  constexpr std::int64_t Columns = Vectors * Width::Lanes;
  constexpr int N = Width::SquareRows;
  VectorOf<Width> pivots[Vectors], load[Vectors];
  LoadStrip<Width>(panel.pivots + c, pivots);
  LoadStrip<Width>(panel.load + c, load);
  double l[N * Columns];
  const auto divide = [&](auto masked, std::int64_t k, std::int64_t r) KORVEX_INLINE {
    ScaleRow<Width, masked != 0>(RowOf(slice, k) + c, panel.tops + c, k,
                                 K.values[K.diagonalAddress[k]], K.load[k], l + r * Columns, pivots,
                                 load);
  };
  for (std::int64_t k = slice.first; k < slice.end; k += N) {
    if (k >= panel.commonTop && k + N <= slice.end) {
      // Unrolled, so that the quotients stay in registers until they are transposed.
      Repeat<N>([&](auto r) KORVEX_INLINE { divide(Constant<0>(), k + r, r); });
      Repeat<Columns / N>([&](auto i) KORVEX_INLINE {
        WriteSquare<N>(K, panel, c + i * N, k, l + i * N, Columns);
      });
    } else {
      const std::int64_t count = Min(N, slice.end - k);
      for (std::int64_t r = 0; r < count; ++r) divide(Constant<1>(), k + r, r);
      WriteRows<Width>(K, panel, c, Columns, k, count, l, Columns);
    }
  }
  StoreStrip<Width>(panel.pivots + c, pivots);
  StoreStrip<Width>(panel.load + c, load);
}

// Prefetches the columns of a later panel while this one is reduced: for tile number `index` of
// `tiles`, its share of their entries. Only the second half of the tiles, which take longer, do so:
// entries fetched earlier would be replaced in the cache before use. Always inline: GCC removes
// calls of a function that only prefetches.
[[gnu::always_inline]] inline void PrefetchPanel(const SkylineArrays& K, const Panel& panel,
                                                 std::int64_t index, std::int64_t tiles) {
  constexpr std::int64_t LineEntries = 8;
  const std::int64_t next = panel.memory.prefetched;
  if (next + PanelColumns >= K.n) return;
  const std::int64_t begin = K.diagonalAddress[next];
  const std::int64_t entries = K.diagonalAddress[next + PanelColumns] - begin;
  // More entries would replace the slice in the second-level cache.
  if (entries > MaxSliceRows * PanelColumns) return;
  const std::int64_t half = tiles / 2;
  if (index < half) return;
  const std::int64_t share = entries / (tiles - half) + 1;
  const std::int64_t p0 = (index - half) * share;
  for (std::int64_t p = p0; p < Min(p0 + share, entries); p += LineEntries) {
    __builtin_prefetch(K.values + begin + p, 0, 2);
  }
}

// Subtracts the terms k >= k0 of a finished slice from rows r0 .. r0 + Rows - 1 of the diagonal
// block, in its last Vectors vectors.
// k0: all columns of the panel reach it.
template <typename Width, int Rows, int Vectors>
void UpdateBlockRows(const SkylineArrays& K, const Slice& slice, std::int64_t k0, std::int64_t r0,
                     Panel& panel) {
  constexpr std::int64_t C = PanelColumns - Vectors * Width::Lanes;
  Entries<Width, Rows, Vectors> a;
  const double* l[Rows];
  Repeat<Rows>([&](auto q) KORVEX_INLINE {
    LoadStrip<Width>(panel.block + (r0 + q) * PanelColumns + C, a[q]);
    l[q] = K.values + (panel.base[r0 + q] - (slice.end - 1));
  });
  const MaskOf<Width> unusedMask[Vectors] = {};
  SubtractTerms<Width, false, Vectors>(l, RowOf(slice, k0) + C, slice.end - k0, unusedMask, a);
  Repeat<Rows>([&](auto q) KORVEX_INLINE {
    StoreStrip<Width>(panel.block + (r0 + q) * PanelColumns + C, a[q]);
  });
}

// Subtracts the terms of a finished slice from the diagonal block.
template <typename Width>
void UpdateDiagonalBlock(const SkylineArrays& K, const Slice& slice, Panel& panel) {
  // With 32 registers, eight rows at a time from commonTop on, where no masks are needed.
  constexpr bool HoldsEightRows = Width::Lanes == 8;
  const std::int64_t commonTop = Max(slice.first, panel.commonTop);
  const Slice ragged = {slice.rows, slice.first,
                        HoldsEightRows ? Min(commonTop, slice.end) : slice.end};
  for (std::int64_t q = 0; q < panel.columns && ragged.first < ragged.end; q += TileRows) {
    UpdateTileRows<Width>(K, panel, ragged,
                          DescribeTile(K, panel.first + q, Min(TileRows, panel.columns - q),
                                       panel.block + q * PanelColumns));
  }
  if constexpr (HoldsEightRows) {
    if (commonTop >= slice.end) return;
    // Entries right of the diagonal: rows 0 to 6 have some in all three vectors, rows 7 to 14 in
    // the last two, rows 15 to 22 in the last, row 23 has none.
    UpdateBlockRows<Width, 7, 3>(K, slice, commonTop, 0, panel);
    UpdateBlockRows<Width, 8, 2>(K, slice, commonTop, 7, panel);
    UpdateBlockRows<Width, 8, 1>(K, slice, commonTop, 15, panel);
  }
}

// Divides row r of the diagonal block by its pivot and subtracts its terms from the rows below; if
// Masked, only for columns that reach row r. Lanes of columns up to r receive arbitrary values,
// which are not used. l: [PanelColumns] the quotients of the row.
template <typename Width, bool Masked>
void FinishBlockRow(std::int64_t r, Panel& panel, double* l) {
  constexpr int Vectors = Width::NarrowVectors;
  constexpr std::int64_t Columns = Vectors * Width::Lanes;
  const std::int64_t k = panel.first + r;
  const double pivotK = panel.pivots[r], loadK = panel.load[r];
  for (std::int64_t c = r / Columns * Columns; c < PanelColumns; c += Columns) {
    const double* t = panel.block + r * PanelColumns + c;
    VectorOf<Width> row[Vectors], pivots[Vectors], load[Vectors];
    LoadStrip<Width>(t, row);
    LoadStrip<Width>(panel.pivots + c, pivots);
    LoadStrip<Width>(panel.load + c, load);
    ScaleRow<Width, Masked>(t, panel.tops + c, k, pivotK, loadK, l + c, pivots, load);
    StoreStrip<Width>(panel.pivots + c, pivots);
    StoreStrip<Width>(panel.load + c, load);
    MaskOf<Width> mask[Vectors];
    if constexpr (Masked) FindMask<Width>(panel.tops + c, static_cast<double>(k), mask);
    for (std::int64_t q = r + 1; q < Min(c + Columns, panel.columns); ++q) {
      if (Masked && panel.tops[q] > static_cast<double>(k)) continue;
      VectorOf<Width> entries[Vectors];
      LoadStrip<Width>(panel.block + q * PanelColumns + c, entries);
      SubtractTerm<Width, Masked, Vectors>(row, l + q, mask, entries);
      StoreStrip<Width>(panel.block + q * PanelColumns + c, entries);
    }
  }
}

// Calls function(slice) for the slices of the rows in memory, top .. end - 1.
template <typename Function>
[[gnu::always_inline]] inline void ForSlices(const Panel& panel, std::int64_t top, std::int64_t end,
                                             const Function& function) {
  for (; top < end; top += panel.memory.sliceRows) {
    function(Slice{RowOf(panel, top), top, Min(top + panel.memory.sliceRows, end)});
  }
}

// Steps 1 and 2 for the rows panel.done .. end - 1, which are in the window.
template <typename Width>
void ReducePanelRows(const SkylineArrays& K, std::int64_t end, const Panel& panel) {
  ReadRows<Width>(K, panel, panel.done, end - panel.done, RowOf(panel, panel.done));
  const std::int64_t tiles = (panel.first - panel.top) / TileRows;
  ForSlices(panel, panel.windowTop, end, [&](const Slice& slice) {
    for (std::int64_t i = Max(panel.done, slice.first); i < end; i += TileRows) {
      if (i < slice.end) PrefetchPanel(K, panel, (i - panel.top) / TileRows, tiles);
      UpdateTileRows<Width>(K, panel, slice, DescribeTile(K, i, TileRows, RowOf(panel, i)));
    }
  });
}

// Where memory does not hold all rows: subtracts the terms of the window from the rows below it,
// and moves the window on.
template <typename Width>
void MoveWindow(const SkylineArrays& K, Panel& panel) {
  // Four tiles at a time, because a square of 8 x 8 has more rows than a tile.
  constexpr std::int64_t ChunkRows = 4 * TileRows;
  double rows[ChunkRows * PanelColumns];
  for (std::int64_t i = panel.done; i < panel.first; i += ChunkRows) {
    const std::int64_t count = Min(ChunkRows, panel.first - i);
    ReadRows<Width>(K, panel, i, count, rows);
    ForSlices(panel, panel.windowTop, panel.done, [&](const Slice& slice) {
      for (std::int64_t r = 0; r < count; r += TileRows) {
        UpdateTileRows<Width>(K, panel, slice,
                              DescribeTile(K, i + r, TileRows, rows + r * PanelColumns));
      }
    });
    WriteRows<Width>(K, panel, 0, PanelColumns, i, count, rows, PanelColumns);
  }
  panel.windowTop = panel.done;
}

template <typename Width>
void BeginPanel(const SkylineArrays& K, std::int64_t first, const PanelRows& memory, Panel& panel) {
  DescribePanel<Width>(K, first, panel);
  ReadDiagonalBlock(K, panel);
  panel.memory = memory;
  panel.windowTop = panel.done = panel.top;
}

template <typename Width>
void ReducePanel(const SkylineArrays& K, std::int64_t end, Panel& panel) {
  constexpr std::int64_t Columns = Width::NarrowVectors * Width::Lanes;
  while (panel.done < end) {
    const std::int64_t windowEnd = Min(panel.windowTop + panel.memory.rowCount, end);
    ReducePanelRows<Width>(K, windowEnd, panel);
    ForSlices(panel, panel.done, windowEnd, [&](const Slice& slice) {
      for (std::int64_t c = 0; c < PanelColumns; c += Columns) {
        FinishStrip<Width>(K, slice, c, panel);
      }
      UpdateDiagonalBlock<Width>(K, slice, panel);
    });
    panel.done = windowEnd;
    if (panel.done < end) MoveWindow<Width>(K, panel);
  }
}

// Step 5: finishes the rows of the diagonal block one by one and writes them to K.
template <typename Width>
void FinishPanel(const SkylineArrays& K, Panel& panel) {
  double l[PanelColumns * PanelColumns];
  for (std::int64_t r = 0; r < panel.columns; ++r) {
    const std::int64_t i = panel.first + r;
    K.values[K.diagonalAddress[i]] = panel.pivots[r];
    K.load[i] = panel.load[r];
    if (panel.commonTop <= panel.first) {
      FinishBlockRow<Width, false>(r, panel, l + r * PanelColumns);
    } else {
      FinishBlockRow<Width, true>(r, panel, l + r * PanelColumns);
    }
  }
  for (std::int64_t c = 0; c < panel.columns; ++c) {
    for (std::int64_t r = FirstBlockRow(K, panel, c); r < c; ++r) {
      K.values[panel.base[c] - (panel.first + r)] = l[r * PanelColumns + c];
    }
  }
}

// The sum of values[0 .. count - 1]: partial sums in eight vectors, then the rest.
template <typename Width>
double SumValues(const double* values, std::int64_t count) {
  constexpr int Vectors = 8;
  constexpr std::int64_t Stride = Vectors * Width::Lanes;
  VectorOf<Width> sums[Vectors] = {};
  std::int64_t i = 0;
  for (; i + Stride <= count; i += Stride) {
    Repeat<Vectors>([&](auto v) KORVEX_INLINE {
      sums[v] = sums[v] + Load<Width>(values + i + v * Width::Lanes);
    });
  }
  double sum = 0.0;
  for (int lane = 0; lane < Width::Lanes; ++lane) {
    for (const VectorOf<Width>& partial : sums) sum += partial[lane];
  }
  for (; i < count; ++i) sum += values[i];
  return sum;
}

}  // namespace
}  // namespace korvex
