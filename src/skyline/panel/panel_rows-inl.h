// Sets the panel's description (top rows, masks, pivots, load), and copies between columns and
// rows.
//
//   K's columns:     diagonal entry first, then upward:  row k of column c is K.values[base[c] - k]
//   slice of rows:   row k of column c is rows[(k - first) * PanelColumns + c]
//
// Squares of 4 x 4 or 8 x 8 entries are transposed in registers on the way. If a column does not
// reach a row, its lane holds an arbitrary value, which is neither used nor written.
#pragma once

#include "platform/shuffle.h"
#include "skyline/panel/panel.h"
#include "skyline/panel/vectors-inl.h"

namespace korvex {
namespace {

// The top row of a missing column: the last panel may have less than 24.
constexpr double NoTop = 1e300;

// Larger than every row number.
constexpr std::int64_t NoRow = INT64_MAX;

// Rows first .. end - 1 of the panel, row-major, PanelColumns entries each.
struct Slice {
  double* rows;
  std::int64_t first, end;
};

inline std::int64_t Min(std::int64_t a, std::int64_t b) { return a < b ? a : b; }
inline std::int64_t Max(std::int64_t a, std::int64_t b) { return a > b ? a : b; }

inline double* RowOf(const Panel& panel, std::int64_t k) {
  return panel.memory.rows + (k - panel.windowTop) * PanelColumns;
}
inline double* RowOf(const Slice& slice, std::int64_t k) {
  return slice.rows + (k - slice.first) * PanelColumns;
}

inline std::int64_t TopRow(const SkylineArrays& K, std::int64_t j) {
  return j - K.columnHeights[j] + 1;
}

// The position in K.values such that row k of column j is at ColumnBase - k.
inline std::int64_t ColumnBase(const SkylineArrays& K, std::int64_t j) {
  return K.diagonalAddress[j] + j;
}

// Finds the steps of the strip from column c, of `vectors` vectors of `lanes` doubles.
inline void FindSteps(const Panel& panel, std::int64_t c, int vectors, int lanes, Steps& steps) {
  int count = 0;
  for (int lane = 0; lane < vectors * lanes; ++lane) {
    if (panel.tops[c + lane] == NoTop) continue;
    const auto row = static_cast<std::int64_t>(panel.tops[c + lane]);
    if (count > 0 && steps.rows[count - 1] == row) continue;  // usual: the dofs of a node
    int s = count++;
    for (; s > 0 && steps.rows[s - 1] > row; --s) steps.rows[s] = steps.rows[s - 1];
    steps.rows[s] = row;
  }
  steps.rows[count] = NoRow;
  for (int s = 0; s < count; ++s) {
    const auto row = static_cast<double>(steps.rows[s]);
    int last = vectors * lanes - 1;
    while (panel.tops[c + last] > row) --last;
    steps.activeVectors[s] = last / lanes + 1;
  }
}

// Finds the steps of all strips of `vectors` vectors.
template <typename Width>
void FindAllSteps(const Panel& panel, int vectors, Steps (&steps)[MaxStrips]) {
  const std::int64_t columns = vectors * Width::Lanes;
  for (std::int64_t c = 0; c < PanelColumns; c += columns) {
    FindSteps(panel, c, vectors, Width::Lanes, steps[c / columns]);
  }
}

// Sets all of `panel` but the diagonal block.
template <typename Width>
void DescribePanel(const SkylineArrays& K, std::int64_t first, Panel& panel) {
  panel.first = first;
  panel.columns = Min(PanelColumns, K.n - first);
  panel.commonTop = panel.columns < PanelColumns ? NoRow : 0;
  for (std::int64_t c = 0; c < PanelColumns; ++c) {
    const bool exists = c < panel.columns;
    const std::int64_t j = first + c;
    panel.tops[c] = exists ? static_cast<double>(TopRow(K, j)) : NoTop;
    panel.base[c] = exists ? ColumnBase(K, j) : 0;
    panel.pivots[c] = exists ? K.values[K.diagonalAddress[j]] : 0.0;
    panel.load[c] = exists ? K.load[j] : 0.0;
    if (exists) panel.commonTop = Max(panel.commonTop, TopRow(K, j));
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
  // For the same work, narrow strips take about a third more time than wide ones.
  panel.isRagged = 4 * stripHeights * Narrow < 3 * (first - top) * PanelColumns;
}

// One line of a square of N rows and N columns: a column, last row first as it is stored, or a row.
template <int N>
struct SquareLine {
  typedef double Type __attribute__((vector_size(N * sizeof(double))));
};
template <int N>
using Square = typename SquareLine<N>::Type[N];

// to[i][j] = from[j][i]. Shuffle takes lanes by number, first those of its first argument.
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

// Copies N columns from c, N rows from k, from K's columns to rows.
// rows: row k and below, row-major, PanelColumns entries each.
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

// Copies N columns from c, N rows from k, from rows to K's columns.
// rows: from row k and column c on, row-major, `step` entries each.
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

// Whether all N columns from c reach row k.
template <int N>
inline bool ReachRow(const Panel& panel, std::int64_t c, std::int64_t k) {
  if (k >= panel.commonTop) return true;
  const auto row = static_cast<double>(k);
  for (std::int64_t d = c; d < c + N; ++d) {
    if (panel.tops[d] > row) return false;
  }
  return true;
}

// Covers `count` rows from row `first` of the N columns from c: calls square(r) for N rows that all
// N columns reach, otherwise single(r) for one row. r: counted from `first`. The last square may
// repeat rows of the square before.
template <int N, typename OneSquare, typename OneRow>
[[gnu::always_inline]] inline void ForSquares(const Panel& panel, std::int64_t c,
                                              std::int64_t first, std::int64_t count,
                                              const OneSquare& square, const OneRow& single) {
  for (std::int64_t r = 0; r < count;) {
    const std::int64_t begin = Min(r, count - N);
    if (begin >= 0 && ReachRow<N>(panel, c, first + begin)) {
      square(begin);
      r = begin + N;
    } else {
      single(r);
      ++r;
    }
  }
}

// Copies `count` rows above the diagonal block from K's columns to rows. Entries that are not
// stored become zero. The outer loop runs over columns: their memory is contiguous, so the
// processor prefetches it. rows: count x PanelColumns, row-major, written completely.
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

// The first row of the diagonal block that column c of the panel reaches, counted in the block.
inline std::int64_t FirstBlockRow(const SkylineArrays& K, const Panel& panel, std::int64_t c) {
  return Max(0, TopRow(K, panel.first + c) - panel.first);
}

// Copies the diagonal block from K's columns. Entries that are not stored become zero.
inline void ReadDiagonalBlock(const SkylineArrays& K, Panel& panel) {
  __builtin_memset(panel.block, 0, sizeof panel.block);
  for (std::int64_t c = 0; c < panel.columns; ++c) {
    for (std::int64_t r = FirstBlockRow(K, panel, c); r <= c; ++r) {
      panel.block[r * PanelColumns + c] = K.values[panel.base[c] - (panel.first + r)];
    }
  }
}

// Copies `count` rows of `columns` columns from c0 back to K's columns.
// rows: from column c0 on, row-major, `step` entries each.
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
