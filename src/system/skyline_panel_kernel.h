// The body of the panel routines (skyline_panel.h), for any vector length.
//
// A panel is reduced from its top downward, a slice of rows at a time. The slice lies row by row in
// `work`; against each earlier node, whose six columns are the rows of a tile, it is taken with
//   A(i, j) -= A(k, i) A(k, j),  k = max(m(i), m(j)) .. i - 1 ascending,
// in registers. Then its rows are divided by their pivots and go back to their columns. Lanes whose
// column does not reach a row are masked, never padded: 0 times infinity would be a NaN.
// Width gives the vectors: Lanes, Vector, Multiply and the vectors of a strip. Everything stands in
// an unnamed namespace and uses no library, so that no other unit can get code for this processor.
#pragma once

#include <emmintrin.h>  // pairs of numbers, for turning rows into columns

#include "system/skyline_panel.h"

namespace korvex {
namespace {

// The top row of a column that takes no part: it is not there, or done.
constexpr double NoRow = 1e300;

// The rows of the factor are written to their columns in blocks of so many.
constexpr std::int64_t BlockRows = 8;

template <typename Width>
using VectorOf = typename Width::Vector;

// Vectors of N numbers where sixteen registers are there: they hold a tile of 6 x 2 N entries and
// what it takes to reduce it, whether all tops of a strip are alike or not.
template <int N>
struct ShortVectors {
  static constexpr int Lanes = N;
  static constexpr int WideVectors = 2;
  static constexpr int NarrowVectors = 2;
  typedef double Vector __attribute__((vector_size(Lanes * sizeof(double))));

  static Vector Multiply(const Vector& v, const double* factor) { return v * *factor; }
};

// The columns first .. first + columns - 1 of K.
struct Panel {
  std::int64_t first, columns;
  std::int64_t top;                 // highest row of any column, rounded up to a tile's
  bool isRagged;                    // tops too different for one strip
  std::int64_t base[PanelColumns];  // row k of column c is K.values[base[c] - k]
  // Top rows, as numbers of the kind that vectors compare.
  double tops[PanelColumns];
  double pivots[PanelColumns];
  double load[PanelColumns];
  double own[PanelColumns * PanelColumns];  // rows `first` and below, row by row
};

// Rows first .. end - 1 of the panel, row by row.
struct Slice {
  double* rows;
  std::int64_t first, end;
};

inline std::int64_t Min(std::int64_t a, std::int64_t b) { return a < b ? a : b; }
inline std::int64_t Max(std::int64_t a, std::int64_t b) { return a > b ? a : b; }

inline double* RowOf(const Slice& slice, std::int64_t k) {
  return slice.rows + (k - slice.first) * PanelColumns;
}

inline std::int64_t TopRow(const SkylineArrays& K, std::int64_t j) {
  return j - K.columnHeights[j] + 1;
}

// Row k of column j lies k entries before this position.
inline std::int64_t ColumnBase(const SkylineArrays& K, std::int64_t j) {
  return K.diagonalAddress[j] + j;
}

template <typename Width>
inline VectorOf<Width> Load(const double* p) {
  VectorOf<Width> v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}

template <typename Width>
inline void Store(double* p, const VectorOf<Width>& v) {
  __builtin_memcpy(p, &v, sizeof v);
}

// f(0), f(1) .. f(Count - 1), written out, with constants as arguments. Only so do compilers keep
// an array of vectors in registers.
template <int I>
struct Constant {
  constexpr operator int() const { return I; }
};
template <int Count, int I = 0, typename Function>
[[gnu::always_inline]] inline void Repeat(const Function& f) {
  if constexpr (I < Count) {
    f(Constant<I>());
    Repeat<Count, I + 1>(f);
  }
}
#define KORVEX_INLINE __attribute__((always_inline))

// A tile's entries in a strip of the panel's columns: [row][vector].
template <typename Width, int Vectors>
using Entries = VectorOf<Width>[TileRows][Vectors];

// Takes `row` times the multiplier out of row q of the tile; if Masked, where `tops` reach up to k.
template <typename Width, bool Masked, int Vectors>
[[gnu::always_inline]] inline void SubtractTerm(const VectorOf<Width> (&row)[Vectors],
                                                const double* multiplier, const double* tops,
                                                double k, VectorOf<Width> (&entries)[Vectors]) {
  Repeat<Vectors>([&](auto v) KORVEX_INLINE {
    const VectorOf<Width> reduced = entries[v] - Width::Multiply(row[v], multiplier);
    if constexpr (Masked) {
      entries[v] = Load<Width>(tops + v * Width::Lanes) <= k ? reduced : entries[v];
    } else {
      entries[v] = reduced;
    }
  });
}

// Subtracts the terms k0 .. k1 - 1 from a tile.
// last: per row of the tile, its multiplier of term k1 - 1; those before lie behind it.
// w: row k0 of the strip.
template <typename Width, bool Masked, int Vectors>
[[gnu::always_inline]] inline void SubtractTerms(const double* const (&last)[TileRows],
                                                 const double* w, const double* tops,
                                                 std::int64_t k0, std::int64_t k1,
                                                 Entries<Width, Vectors>& a) {
  // Written out four times: in short vectors, counting would cost a sixth of the instructions.
#pragma GCC unroll 4
  for (std::int64_t t = k1 - 1 - k0; t >= 0; --t, w += PanelColumns) {
    VectorOf<Width> row[Vectors];
    Repeat<Vectors>([&](auto v) KORVEX_INLINE { row[v] = Load<Width>(w + v * Width::Lanes); });
    const double k = Masked ? static_cast<double>(k1 - 1 - t) : 0.0;
    Repeat<TileRows>([&](auto q) KORVEX_INLINE {
      SubtractTerm<Width, Masked>(row, last[q] + t, tops, k, a[q]);
    });
  }
}

// Subtracts from each row of a tile the terms of the tile's rows before it.
// l: per row of the tile, its multiplier of the tile's first row; the others lie before it.
template <typename Width, bool Masked, int Vectors>
[[gnu::always_inline]] inline void SubtractOwnTerms(const double* const (&l)[TileRows],
                                                    const double* tops, std::int64_t first,
                                                    Entries<Width, Vectors>& a) {
  Repeat<TileRows>([&](auto p) KORVEX_INLINE {
    const auto k = static_cast<double>(first + p);
    Repeat<TileRows>([&](auto q) KORVEX_INLINE {
      if constexpr (q > p) SubtractTerm<Width, Masked>(a[p], l[q] - p, tops, k, a[q]);
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
  double* target = tile.rows + q * PanelColumns + c;
  for (std::int64_t k = k0; k < k1; ++k) {
    const double* multiplier = K.values + (tile.base[q] - k);
    const double* row = RowOf(slice, k) + c;
    for (int v = 0; v < Vectors; ++v) {
      const int lane = v * Width::Lanes;
      const VectorOf<Width> a = Load<Width>(target + lane);
      const VectorOf<Width> reduced = a - Width::Multiply(Load<Width>(row + lane), multiplier);
      Store<Width>(target + lane,
                   Load<Width>(panel.tops + c + lane) <= static_cast<double>(k) ? reduced : a);
    }
  }
}

// The terms k0 .. k1 - 1 of a whole tile, in the strip from column c, where all six columns reach
// up to k0; then, if `isInside` the slice, those of the tile itself. maskEnd: from here on, no lane
// needs a mask.
template <typename Width, int Vectors>
void UpdateTile(const SkylineArrays& K, const Panel& panel, const Slice& slice, const Tile& tile,
                std::int64_t c, std::int64_t k0, std::int64_t k1, std::int64_t maskEnd,
                bool isInside) {
  Entries<Width, Vectors> a;
  const double* tops = panel.tops + c;
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
  const std::int64_t middle = Max(k0, Min(maskEnd, k1));
  if (k0 < middle) {
    pointAt(middle - 1);
    SubtractTerms<Width, true, Vectors>(l, RowOf(slice, k0) + c, tops, k0, middle, a);
  }
  if (middle < k1) {
    pointAt(k1 - 1);
    SubtractTerms<Width, false, Vectors>(l, RowOf(slice, middle) + c, tops, middle, k1, a);
  }
  if (isInside) {
    pointAt(tile.first);
    if (maskEnd > tile.first) {
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
  // Lanes that do not reach the tile need no mask: nobody reads what they hold.
  double low = NoRow, high = 0.0;
  const auto lastRow = static_cast<double>(tile.first + tile.count - 1);
  for (std::int64_t lane = c; lane < c + Vectors * Width::Lanes; ++lane) {
    const double top = panel.tops[lane];
    if (top > lastRow) continue;
    low = top < low ? top : low;
    high = top > high ? top : high;
  }
  if (low == NoRow) return;

  const std::int64_t k0 = Max(slice.first, static_cast<std::int64_t>(low));
  if (tile.count < TileRows || tile.commonTop > tile.first) {
    for (std::int64_t q = 0; q < tile.count; ++q) {
      UpdateRow<Width, Vectors>(K, panel, slice, tile, c, q, Max(k0, tile.tops[q]),
                                Min(slice.end, tile.first + q));
    }
    return;
  }
  for (std::int64_t q = 0; q < TileRows; ++q) {
    UpdateRow<Width, Vectors>(K, panel, slice, tile, c, q, Max(k0, tile.tops[q]),
                              Min(slice.end, tile.commonTop));
  }
  UpdateTile<Width, Vectors>(K, panel, slice, tile, c, Max(k0, tile.commonTop),
                             Min(slice.end, tile.first), static_cast<std::int64_t>(high),
                             tile.first < slice.end);
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

// Tops, pivots and load of the panel.
template <typename Width>
void DescribePanel(const SkylineArrays& K, std::int64_t first, Panel& panel) {
  panel.first = first;
  panel.columns = Min(PanelColumns, K.n - first);
  std::int64_t top = first;
  std::int64_t stripHeights = 0;
  constexpr std::int64_t Narrow = Width::NarrowVectors * Width::Lanes;
  for (std::int64_t c0 = 0; c0 < PanelColumns; c0 += Narrow) {
    std::int64_t stripTop = first;
    for (std::int64_t c = c0; c < c0 + Narrow; ++c) {
      const bool isThere = c < panel.columns;
      const std::int64_t j = first + c;
      panel.tops[c] = isThere ? static_cast<double>(TopRow(K, j)) : NoRow;
      panel.base[c] = isThere ? ColumnBase(K, j) : 0;
      panel.pivots[c] = isThere ? K.values[K.diagonalAddress[j]] : 0.0;
      panel.load[c] = isThere ? K.load[j] : 0.0;
      if (isThere) stripTop = Min(stripTop, TopRow(K, j));
    }
    stripHeights += first - stripTop;
    top = Min(top, stripTop);
  }
  panel.top = top / TileRows * TileRows;
  // A narrow strip takes about a third more time for its share of a wide one's work.
  panel.isRagged = 4 * stripHeights * Narrow < 3 * (first - top) * PanelColumns;
}

// Whether column c stores rows first .. first + count - 1, none of them the panel's own.
inline bool StoresBlock(const Panel& panel, std::int64_t c, std::int64_t first,
                        std::int64_t count) {
  return static_cast<double>(first) >= panel.tops[c] && first + count <= panel.first;
}

// Copies `count` rows of the panel from their columns; entries that are not stored become zero.
inline void ReadBlock(const SkylineArrays& K, const Panel& panel, std::int64_t first,
                      std::int64_t count, double* rows) {
  for (std::int64_t c = 0; c < PanelColumns; c += 2) {
    const std::int64_t at0 = panel.base[c] - first, at1 = panel.base[c + 1] - first;
    if (count == BlockRows && StoresBlock(panel, c, first, count) &&
        StoresBlock(panel, c + 1, first, count)) {
      for (std::int64_t r = 0; r < BlockRows; r += 2) {
        const __m128d a = _mm_loadu_pd(K.values + (at0 - r - 1));
        const __m128d b = _mm_loadu_pd(K.values + (at1 - r - 1));
        _mm_storeu_pd(rows + r * PanelColumns + c, _mm_unpackhi_pd(a, b));
        _mm_storeu_pd(rows + (r + 1) * PanelColumns + c, _mm_unpacklo_pd(a, b));
      }
      continue;
    }
    for (std::int64_t r = 0; r < count; ++r) {
      for (std::int64_t d = c; d < c + 2; ++d) {
        const bool isStored =
            static_cast<double>(first + r) >= panel.tops[d] && first + r <= panel.first + d;
        rows[r * PanelColumns + d] = isStored ? K.values[panel.base[d] - (first + r)] : 0.0;
      }
    }
  }
}

inline void ReadRows(const SkylineArrays& K, const Panel& panel, std::int64_t first,
                     std::int64_t count, double* rows) {
  for (std::int64_t r = 0; r < count; r += BlockRows) {
    ReadBlock(K, panel, first + r, Min(BlockRows, count - r), rows + r * PanelColumns);
  }
}

// Copies `count` rows, at most BlockRows, of the strip from column c0 back to their columns.
// rows: row by row, `step` entries apart.
inline void WriteBlock(const SkylineArrays& K, const Panel& panel, std::int64_t c0,
                       std::int64_t columns, std::int64_t first, std::int64_t count,
                       const double* rows, std::int64_t step) {
  for (std::int64_t c = 0; c < columns; c += 2) {
    const std::int64_t at0 = panel.base[c0 + c] - first, at1 = panel.base[c0 + c + 1] - first;
    if (count == BlockRows && StoresBlock(panel, c0 + c, first, count) &&
        StoresBlock(panel, c0 + c + 1, first, count)) {
      for (std::int64_t r = 0; r < BlockRows; r += 2) {
        const __m128d x = _mm_loadu_pd(rows + r * step + c);
        const __m128d y = _mm_loadu_pd(rows + (r + 1) * step + c);
        _mm_storeu_pd(K.values + (at0 - r - 1), _mm_unpacklo_pd(y, x));
        _mm_storeu_pd(K.values + (at1 - r - 1), _mm_unpackhi_pd(y, x));
      }
      continue;
    }
    for (std::int64_t r = 0; r < count; ++r) {
      for (std::int64_t d = c; d < c + 2; ++d) {
        if (static_cast<double>(first + r) < panel.tops[c0 + d]) continue;
        K.values[panel.base[c0 + d] - (first + r)] = rows[r * step + d];
      }
    }
  }
}

// Divides row k of a strip by its pivot, l = t / d(k), and takes it out of the columns' pivots and
// loads. A zero multiplier leaves the pivot untouched, also where the product would be a NaN.
template <typename Width, int Vectors>
[[gnu::always_inline]] inline void ScaleRow(const double* t, const double* tops, std::int64_t k,
                                            double pivotK, double loadK, double* l,
                                            VectorOf<Width> (&pivots)[Vectors],
                                            VectorOf<Width> (&load)[Vectors]) {
  for (int v = 0; v < Vectors; ++v) {
    const int lane = v * Width::Lanes;
    const VectorOf<Width> entry = Load<Width>(t + lane);
    const VectorOf<Width> multiplier = entry / pivotK;
    const auto isStored = Load<Width>(tops + lane) <= static_cast<double>(k);
    const auto isTerm = isStored & (multiplier != 0.0);
    pivots[v] = isTerm ? pivots[v] - multiplier * entry : pivots[v];
    load[v] = isStored ? load[v] - multiplier * loadK : load[v];
    Store<Width>(l + lane, multiplier);
  }
}

// Scales the rows of a slice and writes them to their columns, in the strip from column c.
template <typename Width>
void FinishStrip(const SkylineArrays& K, const Slice& slice, std::int64_t c, Panel& panel) {
  constexpr int Vectors = Width::NarrowVectors;
  constexpr std::int64_t Columns = Vectors * Width::Lanes;
  VectorOf<Width> pivots[Vectors], load[Vectors];
  for (int v = 0; v < Vectors; ++v) {
    pivots[v] = Load<Width>(panel.pivots + c + v * Width::Lanes);
    load[v] = Load<Width>(panel.load + c + v * Width::Lanes);
  }
  for (std::int64_t k0 = slice.first; k0 < slice.end; k0 += BlockRows) {
    const std::int64_t count = Min(BlockRows, slice.end - k0);
    double l[BlockRows * Columns];
    for (std::int64_t r = 0; r < count; ++r) {
      const std::int64_t k = k0 + r;
      ScaleRow<Width, Vectors>(RowOf(slice, k) + c, panel.tops + c, k,
                               K.values[K.diagonalAddress[k]], K.load[k], l + r * Columns, pivots,
                               load);
    }
    WriteBlock(K, panel, c, Columns, k0, count, l, Columns);
  }
  for (int v = 0; v < Vectors; ++v) {
    Store<Width>(panel.pivots + c + v * Width::Lanes, pivots[v]);
    Store<Width>(panel.load + c + v * Width::Lanes, load[v]);
  }
}

// Asks for the columns of the next panel while this one is reduced: its share for one of `tiles`
// tiles, the one at `index`. Always inline: to GCC a function that does nothing else is one without
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
  const std::int64_t share = entries / tiles;
  for (std::int64_t p = begin + index * share; p < begin + (index + 1) * share; p += LineEntries) {
    __builtin_prefetch(K.values + p, 0, 2);
  }
}

// Finishes the rows of a slice: all terms of their entries, their division, their columns.
template <typename Width>
void FinishSlice(const SkylineArrays& K, const Slice& slice, Panel& panel) {
  ReadRows(K, panel, slice.first, slice.end - slice.first, slice.rows);
  const std::int64_t tiles = (panel.first - panel.top) / TileRows;
  for (std::int64_t i = slice.first; i < slice.end; i += TileRows) {
    PrefetchNextPanel(K, panel, (i - panel.top) / TileRows, tiles);
    UpdateTileRows<Width>(K, panel, slice, DescribeTile(K, i, TileRows, RowOf(slice, i)));
  }
  constexpr std::int64_t Columns = Width::NarrowVectors * Width::Lanes;
  for (std::int64_t c = 0; c < PanelColumns; c += Columns) FinishStrip<Width>(K, slice, c, panel);
}

// Subtracts the terms of a finished slice from all rows of the panel below it.
template <typename Width>
void UpdateRowsBelow(const SkylineArrays& K, const Slice& slice, Panel& panel) {
  for (std::int64_t i = slice.end; i < panel.first; i += TileRows) {
    double rows[TileRows * PanelColumns];
    ReadRows(K, panel, i, TileRows, rows);
    UpdateTileRows<Width>(K, panel, slice, DescribeTile(K, i, TileRows, rows));
    WriteBlock(K, panel, 0, PanelColumns, i, TileRows, rows, PanelColumns);
  }
  for (std::int64_t q = 0; q < panel.columns; q += TileRows) {
    UpdateTileRows<Width>(K, panel, slice,
                          DescribeTile(K, panel.first + q, Min(TileRows, panel.columns - q),
                                       panel.own + q * PanelColumns));
  }
}

// Finishes the panel's own rows, one by one.
template <typename Width>
void FinishOwnRows(const SkylineArrays& K, Panel& panel) {
  constexpr int Vectors = Width::NarrowVectors;
  constexpr std::int64_t Columns = Vectors * Width::Lanes;
  const Slice own = {panel.own, panel.first, panel.first + panel.columns};
  for (std::int64_t r = 0; r < panel.columns; ++r) {
    const std::int64_t i = panel.first + r;
    const Tile row = DescribeTile(K, i, 1, panel.own + r * PanelColumns);
    panel.tops[r] = NoRow;
    K.values[K.diagonalAddress[i]] = panel.pivots[r];
    K.load[i] = panel.load[r];
    for (std::int64_t c = r / Columns * Columns; c < PanelColumns; c += Columns) {
      UpdateRow<Width, Vectors>(K, panel, own, row, c, 0, Max(row.commonTop, own.first), i);
      VectorOf<Width> pivots[Vectors], load[Vectors];
      for (int v = 0; v < Vectors; ++v) {
        pivots[v] = Load<Width>(panel.pivots + c + v * Width::Lanes);
        load[v] = Load<Width>(panel.load + c + v * Width::Lanes);
      }
      double l[Columns];
      ScaleRow<Width, Vectors>(row.rows + c, panel.tops + c, i, panel.pivots[r], panel.load[r], l,
                               pivots, load);
      WriteBlock(K, panel, c, Columns, i, 1, l, Columns);
      for (int v = 0; v < Vectors; ++v) {
        Store<Width>(panel.pivots + c + v * Width::Lanes, pivots[v]);
        Store<Width>(panel.load + c + v * Width::Lanes, load[v]);
      }
    }
  }
}

template <typename Width>
void FactorPanel(const SkylineArrays& K, std::int64_t first, double* work, std::int64_t sliceRows) {
  Panel panel;
  DescribePanel<Width>(K, first, panel);
  ReadRows(K, panel, first, panel.columns, panel.own);
  for (std::int64_t top = panel.top; top < first; top += sliceRows) {
    const Slice slice = {work, top, Min(top + sliceRows, first)};
    FinishSlice<Width>(K, slice, panel);
    UpdateRowsBelow<Width>(K, slice, panel);
  }
  FinishOwnRows<Width>(K, panel);
}

}  // namespace
}  // namespace korvex
