// What a panel routine (skyline_panel.h) knows of its panel, and how rows come from their columns
// and go back.
//
// Columns lie one after another in memory, the diagonal first and the rows above it following; a
// slice of a panel lies row by row. Between them, squares of four or eight rows and columns are
// turned in registers. Where a column does not reach a row, its lane holds anything: it is neither
// used nor written.
#pragma once

#include "platform/shuffle.h"
#include "skyline/panel/panel.h"
#include "skyline/panel/vectors-inl.h"

namespace korvex {
namespace {

// The top row of a column that is not there: the last panel may have fewer.
constexpr double NoTop = 1e300;

// The row that nothing reaches.
constexpr std::int64_t NoRow = INT64_MAX;

// Strips of a panel in the shortest vectors, two of two numbers.
constexpr std::int64_t MaxStrips = 6;

// The top rows of a strip's columns, ascending: between two of them the same lanes take part, so
// that a mask is made once for many terms.
struct Steps {
  std::int64_t rows[PanelColumns + 1];  // then NoRow
  int vectors[PanelColumns];  // so many, counted from the first, take part from rows[s] on
};

// The columns first .. first + columns - 1 of K.
struct Panel {
  std::int64_t first, columns;
  std::int64_t top;                 // highest row of any column, rounded up to a tile's
  std::int64_t full;                // from here on, all 24 columns are stored; NoRow if some miss
  bool isRagged;                    // tops too different for one strip
  Steps wide[MaxStrips];            // of the wide strips; not used where narrow ones are as wide
  Steps narrow[MaxStrips];          // of the narrow strips
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

// Lists the top rows of the strip from column c, `vectors` vectors of `lanes` numbers.
inline void FindSteps(const Panel& panel, std::int64_t c, int vectors, int lanes, Steps& steps) {
  int count = 0;
  for (int lane = 0; lane < vectors * lanes; ++lane) {
    if (panel.tops[c + lane] == NoTop) continue;
    const auto row = static_cast<std::int64_t>(panel.tops[c + lane]);
    if (count > 0 && steps.rows[count - 1] == row) continue;  // the dofs of a node
    int s = count++;
    for (; s > 0 && steps.rows[s - 1] > row; --s) steps.rows[s] = steps.rows[s - 1];
    steps.rows[s] = row;
  }
  steps.rows[count] = NoRow;
  for (int s = 0; s < count; ++s) {
    const auto row = static_cast<double>(steps.rows[s]);
    int last = vectors * lanes - 1;
    while (panel.tops[c + last] > row) --last;
    steps.vectors[s] = last / lanes + 1;
  }
}

// Lists the top rows of all strips of so many vectors.
template <typename Width>
void FindAllSteps(const Panel& panel, int vectors, Steps (&steps)[MaxStrips]) {
  const std::int64_t columns = vectors * Width::Lanes;
  for (std::int64_t c = 0; c < PanelColumns; c += columns) {
    FindSteps(panel, c, vectors, Width::Lanes, steps[c / columns]);
  }
}

// Tops, pivots and load of the panel.
template <typename Width>
void DescribePanel(const SkylineArrays& K, std::int64_t first, Panel& panel) {
  panel.first = first;
  panel.columns = Min(PanelColumns, K.n - first);
  panel.full = panel.columns < PanelColumns ? NoRow : 0;
  for (std::int64_t c = 0; c < PanelColumns; ++c) {
    const bool isThere = c < panel.columns;
    const std::int64_t j = first + c;
    panel.tops[c] = isThere ? static_cast<double>(TopRow(K, j)) : NoTop;
    panel.base[c] = isThere ? ColumnBase(K, j) : 0;
    panel.pivots[c] = isThere ? K.values[K.diagonalAddress[j]] : 0.0;
    panel.load[c] = isThere ? K.load[j] : 0.0;
    if (isThere) panel.full = Max(panel.full, TopRow(K, j));
  }
  FindAllSteps<Width>(panel, Width::NarrowVectors, panel.narrow);
  if constexpr (Width::WideVectors > Width::NarrowVectors) {
    FindAllSteps<Width>(panel, Width::WideVectors, panel.wide);
  }
  constexpr std::int64_t Narrow = Width::NarrowVectors * Width::Lanes;
  std::int64_t top = first;
  std::int64_t stripHeights = 0;
  for (std::int64_t strip = 0; strip < PanelColumns / Narrow; ++strip) {
    const std::int64_t stripTop = Min(first, panel.narrow[strip].rows[0]);
    stripHeights += first - stripTop;
    top = Min(top, stripTop);
  }
  panel.top = top / TileRows * TileRows;
  // A narrow strip takes about a third more time for its share of a wide one's work.
  panel.isRagged = 4 * stripHeights * Narrow < 3 * (first - top) * PanelColumns;
}

// N numbers of a square of N rows and columns: of one column, the last row first, as they are
// stored, or of one row.
template <int N>
struct SquareLine {
  typedef double Type __attribute__((vector_size(N * sizeof(double))));
};
template <int N>
using Square = typename SquareLine<N>::Type[N];

// to[i][j] = from[j][i]
[[gnu::always_inline]] inline void Transpose(const Square<4>& from, Square<4>& to) {
  Square<4> t;
  Repeat<2>([&](auto i) KORVEX_INLINE {
    Shuffle<0, 4, 2, 6>(from[2 * i], from[2 * i + 1], t[i]);
    Shuffle<1, 5, 3, 7>(from[2 * i], from[2 * i + 1], t[i + 2]);
  });
  Repeat<2>([&](auto i) KORVEX_INLINE {
    Shuffle<0, 1, 4, 5>(t[2 * i], t[2 * i + 1], to[i]);
    Shuffle<2, 3, 6, 7>(t[2 * i], t[2 * i + 1], to[i + 2]);
  });
}
[[gnu::always_inline]] inline void Transpose(const Square<8>& from, Square<8>& to) {
  Square<8> t, u;
  Repeat<4>([&](auto i) KORVEX_INLINE {
    Shuffle<0, 8, 2, 10, 4, 12, 6, 14>(from[2 * i], from[2 * i + 1], t[i]);
    Shuffle<1, 9, 3, 11, 5, 13, 7, 15>(from[2 * i], from[2 * i + 1], t[i + 4]);
  });
  const auto exchangePairs = [](const Square<8>& v, Square<8>& w) KORVEX_INLINE {
    Repeat<4>([&](auto i) KORVEX_INLINE {
      Shuffle<0, 1, 4, 5, 8, 9, 12, 13>(v[2 * i], v[2 * i + 1], w[i]);
      Shuffle<2, 3, 6, 7, 10, 11, 14, 15>(v[2 * i], v[2 * i + 1], w[i + 4]);
    });
  };
  exchangePairs(t, u);
  exchangePairs(u, to);
}

// Copies the square of the N columns from c and the N rows from k from the columns to `rows`, which
// begins with row k and has the panel's columns.
template <int N>
[[gnu::always_inline]] inline void ReadSquare(const SkylineArrays& K, const Panel& panel,
                                              std::int64_t c, std::int64_t k, double* rows) {
  Square<N> from, to;
  Repeat<N>([&](auto d) KORVEX_INLINE {
    __builtin_memcpy(&from[d], K.values + (panel.base[c + d] - (k + N - 1)), sizeof from[d]);
  });
  Transpose(from, to);
  Repeat<N>([&](auto i) KORVEX_INLINE {
    __builtin_memcpy(rows + (N - 1 - i) * PanelColumns + c, &to[i], sizeof to[i]);
  });
}

// Copies it back to the columns. rows: begins with row k and column c, `step` entries a row.
template <int N>
[[gnu::always_inline]] inline void WriteSquare(const SkylineArrays& K, const Panel& panel,
                                               std::int64_t c, std::int64_t k, const double* rows,
                                               std::int64_t step) {
  Square<N> from, to;
  Repeat<N>([&](auto i) KORVEX_INLINE {
    __builtin_memcpy(&from[i], rows + (N - 1 - i) * step, sizeof from[i]);
  });
  Transpose(from, to);
  Repeat<N>([&](auto d) KORVEX_INLINE {
    __builtin_memcpy(K.values + (panel.base[c + d] - (k + N - 1)), &to[d], sizeof to[d]);
  });
}

// Whether the N columns from c store the rows from k on.
template <int N>
inline bool StoreRows(const Panel& panel, std::int64_t c, std::int64_t k) {
  if (k >= panel.full) return true;
  const auto row = static_cast<double>(k);
  for (std::int64_t d = c; d < c + N; ++d) {
    if (panel.tops[d] > row) return false;
  }
  return true;
}

// Calls square(r) for the squares of the N columns from c that are stored whole, r the first of
// their rows, counted from row `first`, and single(r) for the other rows. The last square may
// repeat rows of the one before.
template <int N, typename OneSquare, typename OneRow>
[[gnu::always_inline]] inline void ForSquares(const Panel& panel, std::int64_t c,
                                              std::int64_t first, std::int64_t count,
                                              const OneSquare& square, const OneRow& single) {
  for (std::int64_t r = 0; r < count;) {
    const std::int64_t begin = Min(r, count - N);
    if (begin >= 0 && StoreRows<N>(panel, c, first + begin)) {
      square(begin);
      r = begin + N;
    } else {
      single(r);
      ++r;
    }
  }
}

// Copies `count` rows above the panel from their columns; entries that are not stored become zero.
// Columns outside: a stretch of memory read at a time is fetched ahead by the processor.
template <typename Width>
void ReadRows(const SkylineArrays& K, const Panel& panel, std::int64_t first, std::int64_t count,
              double* rows) {
  constexpr int N = Width::SquareRows;
  for (std::int64_t c = 0; c < PanelColumns; c += N) {
    const auto square = [&](std::int64_t r) KORVEX_INLINE {
      ReadSquare<N>(K, panel, c, first + r, rows + r * PanelColumns);
    };
    const auto single = [&](std::int64_t r) KORVEX_INLINE {
      const std::int64_t k = first + r;
      for (std::int64_t d = c; d < c + N; ++d) {
        const bool isStored = panel.tops[d] <= static_cast<double>(k);
        rows[r * PanelColumns + d] = isStored ? K.values[panel.base[d] - k] : 0.0;
      }
    };
    ForSquares<N>(panel, c, first, count, square, single);
  }
}

// The first of the panel's own rows that its column c stores, counted from the panel's first.
inline std::int64_t FirstOwnRow(const SkylineArrays& K, const Panel& panel, std::int64_t c) {
  return Max(0, TopRow(K, panel.first + c) - panel.first);
}

// Copies the panel's own rows from their columns; entries that are not stored become zero.
inline void ReadOwnRows(const SkylineArrays& K, Panel& panel) {
  __builtin_memset(panel.own, 0, sizeof panel.own);
  for (std::int64_t c = 0; c < panel.columns; ++c) {
    for (std::int64_t r = FirstOwnRow(K, panel, c); r <= c; ++r) {
      panel.own[r * PanelColumns + c] = K.values[panel.base[c] - (panel.first + r)];
    }
  }
}

// Copies `count` rows of the strip from column c0 back to their columns.
// rows: row by row, `step` entries apart.
template <typename Width>
void WriteRows(const SkylineArrays& K, const Panel& panel, std::int64_t c0, std::int64_t columns,
               std::int64_t first, std::int64_t count, const double* rows, std::int64_t step) {
  constexpr int N = Width::SquareRows;
  for (std::int64_t c = c0; c < c0 + columns; c += N) {
    const auto square = [&](std::int64_t r) KORVEX_INLINE {
      WriteSquare<N>(K, panel, c, first + r, rows + r * step + (c - c0), step);
    };
    const auto single = [&](std::int64_t r) KORVEX_INLINE {
      for (std::int64_t d = c; d < c + N; ++d) {
        if (static_cast<double>(first + r) < panel.tops[d]) continue;
        K.values[panel.base[d] - (first + r)] = rows[r * step + (d - c0)];
      }
    };
    ForSquares<N>(panel, c, first, count, square, single);
  }
}

}  // namespace
}  // namespace korvex
