// The body of the panel routines (skyline_panel.h), for any vector length.
//
// A panel is reduced from its top downward, a slice of rows at a time. The slice lies row by row in
// `work`; against each earlier node, whose six columns are the rows of a tile, it is taken with
//   A(i, j) -= A(k, i) A(k, j),  k = max(m(i), m(j)) .. i - 1 ascending,
// in registers. Then its rows are divided by their pivots and go back to their columns. Lanes whose
// column does not reach a row are masked, never padded: 0 times infinity would be a NaN. Everything
// stands in an unnamed namespace, as in skyline_vectors.h.
#pragma once

#include "skyline/panel/panel_rows-inl.h"

namespace korvex {
namespace {

// Rows of entries in a strip of the panel's columns: [row][vector].
template <typename Width, int Rows, int Vectors>
using Entries = VectorOf<Width>[Rows][Vectors];

// The lanes of a strip whose columns reach up to row k.
template <typename Width, int Vectors>
[[gnu::always_inline]] inline void FindMask(const double* tops, double k,
                                            MaskOf<Width> (&mask)[Vectors]) {
  Repeat<Vectors>([&](auto v)
                      KORVEX_INLINE { mask[v] = Load<Width>(tops + v * Width::Lanes) <= k; });
}

// Takes `row` times the multiplier out of a row of entries, in its first vectors, Active of them;
// if Masked, in the lanes of the mask.
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

// Subtracts `count` terms from rows of entries, in the first vectors of a strip, Active of them.
// last: per row, its multiplier of the last term; those before lie behind it.
// w: the strip's row of the first term.
template <typename Width, bool Masked, int Active, int Rows, int Vectors>
[[gnu::always_inline]] inline void SubtractTerms(const double* const (&last)[Rows], const double* w,
                                                 std::int64_t count,
                                                 const MaskOf<Width> (&mask)[Vectors],
                                                 Entries<Width, Rows, Vectors>& a) {
  // Written out four times: in short vectors, counting would cost a sixth of the instructions.
#pragma GCC unroll 4
  for (std::int64_t t = count - 1; t >= 0; --t, w += PanelColumns) {
    VectorOf<Width> row[Vectors];
    Repeat<Active>([&](auto v) KORVEX_INLINE { row[v] = Load<Width>(w + v * Width::Lanes); });
    Repeat<Rows>([&](auto q) KORVEX_INLINE {
      SubtractTerm<Width, Masked, Active>(row, last[q] + t, mask, a[q]);
    });
  }
}

// Subtracts from each row of a tile the terms of the tile's rows before it.
// l: per row of the tile, its multiplier of the tile's first row; the others lie before it.
template <typename Width, bool Masked, int Vectors>
[[gnu::always_inline]] inline void SubtractOwnTerms(const double* const (&l)[TileRows],
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

// Rows of the panel that are reduced together: a node's.
struct Tile {
  std::int64_t first, count;    // rows first .. first + count - 1, count <= TileRows
  double* rows;                 // [count][PanelColumns]
  std::int64_t base[TileRows];  // as in Panel, of the columns whose numbers the rows have
  std::int64_t tops[TileRows];  // their top rows
  std::int64_t commonTop;       // the lowest of them
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

// The terms k0 .. k1 - 1 of row q of a tile, in the strip from column c: the way that suits all
// tops.
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

// The terms of a whole tile that lie in the slice, from k0 on, in the strip from column c, where
// all six columns reach up to k0; those of the tile itself come last.
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
  // Lanes that do not reach the tile need no mask: nobody reads what they hold.
  int s = 0;
  for (; steps.rows[s + 1] < tile.first + TileRows; ++s) {
    const std::int64_t end = Min(steps.rows[s + 1], k1);
    if (k0 >= end) continue;
    pointAt(end - 1);
    FindMask<Width>(tops, static_cast<double>(steps.rows[s]), mask);
    Repeat<Vectors>([&](auto v) KORVEX_INLINE {
      if (steps.vectors[s] == v + 1) {
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
      SubtractOwnTerms<Width, true, Vectors>(l, tops, tile.first, a);
    } else {
      SubtractOwnTerms<Width, false, Vectors>(l, tops, tile.first, a);
    }
  }
  forEntries([](double* p, VectorOf<Width>& entry) KORVEX_INLINE { Store<Width>(p, entry); });
}

// The terms of a tile that lie in the slice, in the strip from column c.
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

// The terms of a tile that lie in the slice.
template <typename Width>
void UpdateTileRows(const SkylineArrays& K, const Panel& panel, const Slice& slice,
                    const Tile& tile) {
  constexpr std::int64_t Wide = Width::WideVectors * Width::Lanes;
  constexpr std::int64_t Narrow = Width::NarrowVectors * Width::Lanes;
  // Of the panel's own rows, only the columns behind them count.
  const std::int64_t done = Max(0, tile.first - panel.first);
  if (panel.isRagged || done >= Narrow) {
    for (std::int64_t c = done / Narrow * Narrow; c < PanelColumns; c += Narrow) {
      UpdateStrip<Width, Width::NarrowVectors>(K, panel, slice, tile, c);
    }
  } else {
    for (std::int64_t c = 0; c < PanelColumns; c += Wide) {
      UpdateStrip<Width, Width::WideVectors>(K, panel, slice, tile, c);
    }
  }
}

// Divides row k of a strip by its pivot, l = t / d(k), and takes it out of the columns' pivots and
// loads; if Masked, where they reach up to k. A zero multiplier leaves the pivot untouched: its
// sign, too, where it is zero itself.
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

// Scales the rows of a slice and writes them to their columns, in the strip from column c.
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
    if (k >= panel.full && k + N <= slice.end) {
      // Written out, so that the quotients stay in registers until they are in their columns.
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

// Asks for the columns of the next panel while this one is reduced: the share of one of `tiles`
// tiles, the one at `index`. Only the second half, the larger tiles, asks: what came earlier would
// be driven out again. Always inline: to GCC a function that does nothing else is one without
// effects, whose calls it drops.
[[gnu::always_inline]] inline void PrefetchNextPanel(const SkylineArrays& K, const Panel& panel,
                                                     std::int64_t index, std::int64_t tiles) {
  constexpr std::int64_t LineEntries = 8;
  const std::int64_t next = panel.first + PanelColumns;
  if (next + PanelColumns >= K.n) return;
  const std::int64_t begin = K.diagonalAddress[next];
  const std::int64_t entries = K.diagonalAddress[next + PanelColumns] - begin;
  // More would drive the slice out of the second cache.
  if (entries > MaxSliceRows * PanelColumns) return;
  const std::int64_t half = tiles / 2;
  if (index < half) return;
  const std::int64_t share = entries / (tiles - half) + 1;
  const std::int64_t p0 = (index - half) * share;
  for (std::int64_t p = p0; p < Min(p0 + share, entries); p += LineEntries) {
    __builtin_prefetch(K.values + begin + p, 0, 2);
  }
}

// Finishes the rows of a slice: all terms of their entries, their division, their columns.
template <typename Width>
void FinishSlice(const SkylineArrays& K, const Slice& slice, Panel& panel) {
  ReadRows<Width>(K, panel, slice.first, slice.end - slice.first, slice.rows);
  const std::int64_t tiles = (panel.first - panel.top) / TileRows;
  for (std::int64_t i = slice.first; i < slice.end; i += TileRows) {
    PrefetchNextPanel(K, panel, (i - panel.top) / TileRows, tiles);
    UpdateTileRows<Width>(K, panel, slice, DescribeTile(K, i, TileRows, RowOf(slice, i)));
  }
  constexpr std::int64_t Columns = Width::NarrowVectors * Width::Lanes;
  for (std::int64_t c = 0; c < PanelColumns; c += Columns) FinishStrip<Width>(K, slice, c, panel);
}

// Subtracts the terms k0 and below of a finished slice from Rows of the panel's own rows, the first
// of them r0, in the last vectors of the panel; all columns reach up to k0.
template <typename Width, int Rows, int Vectors>
void UpdateOwnRows(const SkylineArrays& K, const Slice& slice, std::int64_t k0, std::int64_t r0,
                   Panel& panel) {
  constexpr std::int64_t C = PanelColumns - Vectors * Width::Lanes;
  Entries<Width, Rows, Vectors> a;
  const double* l[Rows];
  Repeat<Rows>([&](auto q) KORVEX_INLINE {
    LoadStrip<Width>(panel.own + (r0 + q) * PanelColumns + C, a[q]);
    l[q] = K.values + (panel.base[r0 + q] - (slice.end - 1));
  });
  const MaskOf<Width> noMask[Vectors] = {};
  SubtractTerms<Width, false, Vectors>(l, RowOf(slice, k0) + C, slice.end - k0, noMask, a);
  Repeat<Rows>([&](auto q) KORVEX_INLINE {
    StoreStrip<Width>(panel.own + (r0 + q) * PanelColumns + C, a[q]);
  });
}

// Subtracts the terms of a finished slice from the panel's own rows.
template <typename Width>
void UpdateAllOwnRows(const SkylineArrays& K, const Slice& slice, Panel& panel) {
  // Where thirty-two registers hold eight rows, none needs a mask from `full` on.
  constexpr bool HasBlocks = Width::Lanes == 8;
  const std::int64_t full = Max(slice.first, panel.full);
  const Slice ragged = {slice.rows, slice.first, HasBlocks ? Min(full, slice.end) : slice.end};
  for (std::int64_t q = 0; q < panel.columns && ragged.first < ragged.end; q += TileRows) {
    UpdateTileRows<Width>(K, panel, ragged,
                          DescribeTile(K, panel.first + q, Min(TileRows, panel.columns - q),
                                       panel.own + q * PanelColumns));
  }
  if constexpr (HasBlocks) {
    if (full >= slice.end) return;
    // Row 6 is the last that needs the first vector behind its diagonal entry, row 14 the second,
    // row 22 the third, and row 23 none.
    UpdateOwnRows<Width, 7, 3>(K, slice, full, 0, panel);
    UpdateOwnRows<Width, 8, 2>(K, slice, full, 7, panel);
    UpdateOwnRows<Width, 8, 1>(K, slice, full, 15, panel);
  }
}

// Subtracts the terms of a finished slice from all rows of the panel below it.
template <typename Width>
void UpdateRowsBelow(const SkylineArrays& K, const Slice& slice, Panel& panel) {
  // Several tiles at a time: squares may have more rows than one.
  constexpr std::int64_t BlockRows = 4 * TileRows;
  double rows[BlockRows * PanelColumns];
  for (std::int64_t i = slice.end; i < panel.first; i += BlockRows) {
    const std::int64_t count = Min(BlockRows, panel.first - i);
    ReadRows<Width>(K, panel, i, count, rows);
    for (std::int64_t r = 0; r < count; r += TileRows) {
      UpdateTileRows<Width>(K, panel, slice,
                            DescribeTile(K, i + r, TileRows, rows + r * PanelColumns));
    }
    WriteRows<Width>(K, panel, 0, PanelColumns, i, count, rows, PanelColumns);
  }
  UpdateAllOwnRows<Width>(K, slice, panel);
}

// Divides row r of the panel's own rows, and takes it out of those below; if Masked, where columns
// reach up to it. What this does to columns up to r nobody reads.
// l: the quotients of the row, [PanelColumns].
template <typename Width, bool Masked>
void FinishOwnRow(std::int64_t r, Panel& panel, double* l) {
  constexpr int Vectors = Width::NarrowVectors;
  constexpr std::int64_t Columns = Vectors * Width::Lanes;
  const std::int64_t k = panel.first + r;
  const double pivotK = panel.pivots[r], loadK = panel.load[r];
  for (std::int64_t c = r / Columns * Columns; c < PanelColumns; c += Columns) {
    const double* t = panel.own + r * PanelColumns + c;
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
      LoadStrip<Width>(panel.own + q * PanelColumns + c, entries);
      SubtractTerm<Width, Masked, Vectors>(row, l + q, mask, entries);
      StoreStrip<Width>(panel.own + q * PanelColumns + c, entries);
    }
  }
}

// Finishes the panel's own rows, one by one, and writes them.
template <typename Width>
void FinishOwnRows(const SkylineArrays& K, Panel& panel) {
  double l[PanelColumns * PanelColumns];
  for (std::int64_t r = 0; r < panel.columns; ++r) {
    const std::int64_t i = panel.first + r;
    K.values[K.diagonalAddress[i]] = panel.pivots[r];
    K.load[i] = panel.load[r];
    if (panel.full <= panel.first) {
      FinishOwnRow<Width, false>(r, panel, l + r * PanelColumns);
    } else {
      FinishOwnRow<Width, true>(r, panel, l + r * PanelColumns);
    }
  }
  for (std::int64_t c = 0; c < panel.columns; ++c) {
    for (std::int64_t r = FirstOwnRow(K, panel, c); r < c; ++r) {
      K.values[panel.base[c] - (panel.first + r)] = l[r * PanelColumns + c];
    }
  }
}

template <typename Width>
void FactorPanel(const SkylineArrays& K, std::int64_t first, double* work, std::int64_t sliceRows) {
  Panel panel;
  DescribePanel<Width>(K, first, panel);
  ReadOwnRows(K, panel);
  for (std::int64_t top = panel.top; top < first; top += sliceRows) {
    const Slice slice = {work, top, Min(top + sliceRows, first)};
    FinishSlice<Width>(K, slice, panel);
    UpdateRowsBelow<Width>(K, slice, panel);
  }
  FinishOwnRows<Width>(K, panel);
}

}  // namespace
}  // namespace korvex
