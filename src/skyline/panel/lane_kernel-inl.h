// The routines of lanes.h for any vector length.
//
// The forward reduction takes the columns of a tile together: no sum waits for another, except
// within the tile. The back substitution cannot, because the sum of a row begins with the u of the
// row below; there the lanes alone fill the time.
#pragma once

#include "skyline/panel/lanes.h"
#include "skyline/panel/panel_rows-inl.h"

namespace korvex {
namespace {

// sums -= factor * values, lane by lane.
template <typename Width, int Vectors>
[[gnu::always_inline]] inline void SubtractLanes(const double* values, const double* factor,
                                                 VectorOf<Width> (&sums)[Vectors]) {
  Repeat<Vectors>([&](auto v) KORVEX_INLINE {
    sums[v] = sums[v] - Width::Multiply(Load<Width>(values + v * Width::Lanes), factor);
  });
}

// Columns whose y are computed together.
template <int Columns>
struct LaneTile {
  std::int64_t first;
  const double* base[Columns];  // l(k, first + q) is at base[q] - k
  std::int64_t tops[Columns];
  std::int64_t commonTop;  // first row that all of them reach, at most `first`
};

template <int Columns>
LaneTile<Columns> DescribeLaneTile(const SkylineArrays& K, std::int64_t first) {
  LaneTile<Columns> tile;
  tile.first = first;
  tile.commonTop = 0;
  for (std::int64_t q = 0; q < Columns; ++q) {
    tile.base[q] = K.values + ColumnBase(K, first + q);
    tile.tops[q] = TopRow(K, first + q);
    tile.commonTop = Max(tile.commonTop, Min(tile.tops[q], first));
  }
  return tile;
}

// Computes the y of a tile in one strip of lanes.
// y: of row 0, from the strip's first lane on.
template <typename Width, int Lanes, int Vectors, int Columns>
void ReduceTile(const LaneTile<Columns>& tile, double* y) {
  VectorOf<Width> sums[Columns][Vectors];
  Repeat<Columns>([&](auto q) KORVEX_INLINE {
    LoadStrip<Width>(y + (tile.first + q) * Lanes, sums[q]);
    for (std::int64_t k = tile.tops[q]; k < tile.commonTop; ++k) {
      SubtractLanes<Width>(y + k * Lanes, tile.base[q] - k, sums[q]);
    }
  });
  for (std::int64_t k = tile.commonTop; k < tile.first; ++k) {
    Repeat<Columns>([&](auto q) KORVEX_INLINE {
      SubtractLanes<Width>(y + k * Lanes, tile.base[q] - k, sums[q]);
    });
  }
  Repeat<Columns>([&](auto q) KORVEX_INLINE {
    const std::int64_t j = tile.first + q;
    for (std::int64_t k = Max(tile.tops[q], tile.first); k < j; ++k) {
      SubtractLanes<Width>(y + k * Lanes, tile.base[q] - k, sums[q]);
    }
    StoreStrip<Width>(y + j * Lanes, sums[q]);
  });
}

template <typename Width, int Lanes, int Columns>
void ReduceColumns(const LaneArrays& arrays, std::int64_t first) {
  constexpr int Fitting = Lanes / Width::Lanes;
  constexpr int Vectors = Fitting < Width::WideVectors ? Fitting : Width::WideVectors;
  const LaneTile<Columns> tile = DescribeLaneTile<Columns>(arrays.K, first);
  for (std::int64_t lane = 0; lane < Lanes; lane += Vectors * Width::Lanes) {
    ReduceTile<Width, Lanes, Vectors>(tile, arrays.values + lane);
  }
}

template <typename Width, int Lanes>
void ReduceRows(const LaneArrays& arrays, std::int64_t first, std::int64_t end) {
  std::int64_t j = first;
  for (; j + TileRows <= end; j += TileRows) ReduceColumns<Width, Lanes, TileRows>(arrays, j);
  for (; j < end; ++j) ReduceColumns<Width, Lanes, 1>(arrays, j);
}

// Copies the factors of a block's rows, so that each row reads its own one after the other: row r
// upward from the last, j ascending. Where a column does not reach a row, nothing is written.
inline void CopyMultipliers(const BlockColumns& block) {
  double* multiplier = block.multipliers;
  for (std::int64_t t = block.count - 1; t >= 0; --t, ++multiplier) {
    const ReachingColumn& column = block.columns[t];
    const std::int64_t rows = Min(BlockRows, block.end - column.top);
    for (std::int64_t r = 0; r < rows; ++r) multiplier[r * block.count] = column.entry[r];
  }
}

// Requests an eighth of what the block above will read: for row r from below.
inline void PrefetchEntries(const LaneArrays& arrays, const BlockColumns& block, std::int64_t r) {
  const double* const lastValue = arrays.K.values + arrays.size - 1;
  for (std::int64_t t = r; t < block.count; t += BlockRows) {
    const double* entry = block.columns[t].entry;
    __builtin_prefetch(entry + Min(2 * BlockRows - 1, lastValue - entry));
  }
}

// Computes u(i) of row i of a block from y(i). All u below are known.
template <typename Width, int Lanes>
void SubstituteRow(const LaneArrays& arrays, const BlockColumns& block, std::int64_t i) {
  constexpr int Vectors = Lanes / Width::Lanes;
  const SkylineArrays& K = arrays.K;
  const double pivot = K.values[K.diagonalAddress[i]];
  VectorOf<Width> sums[Vectors];
  LoadStrip<Width>(arrays.values + i * Lanes, sums);
  Repeat<Vectors>([&](auto v) KORVEX_INLINE { sums[v] = sums[v] / pivot; });
  for (std::int64_t j = i + 1; j < block.end; ++j) {
    if (i < TopRow(K, j)) continue;
    SubtractLanes<Width>(arrays.values + j * Lanes, K.values + (ColumnBase(K, j) - i), sums);
  }
  const double* multiplier = block.multipliers + (block.end - 1 - i) * block.count;
  for (std::int64_t t = block.count - 1; t >= 0; --t, ++multiplier) {
    const ReachingColumn& column = block.columns[t];
    if (i >= column.top) SubtractLanes<Width>(column.u, multiplier, sums);
  }
  StoreStrip<Width>(arrays.values + i * Lanes, sums);
}

template <typename Width, int Lanes>
void SubstituteRows(const LaneArrays& arrays, const BlockColumns& block) {
  CopyMultipliers(block);
  for (std::int64_t i = block.end - 1; i >= block.begin; --i) {
    PrefetchEntries(arrays, block, block.end - 1 - i);
    SubstituteRow<Width, Lanes>(arrays, block, i);
  }
}

template <typename Width>
void ReduceLanes(const LaneArrays& arrays, std::int64_t first, std::int64_t end) {
  switch (arrays.lanes) {
    case LaneStep:
      return ReduceRows<Width, LaneStep>(arrays, first, end);
    case 2 * LaneStep:
      return ReduceRows<Width, 2 * LaneStep>(arrays, first, end);
    default:
      return ReduceRows<Width, MaxLanes>(arrays, first, end);
  }
}

template <typename Width>
void SubstituteLanes(const LaneArrays& arrays, const BlockColumns& block) {
  switch (arrays.lanes) {
    case LaneStep:
      return SubstituteRows<Width, LaneStep>(arrays, block);
    case 2 * LaneStep:
      return SubstituteRows<Width, 2 * LaneStep>(arrays, block);
    default:
      return SubstituteRows<Width, MaxLanes>(arrays, block);
  }
}

}  // namespace
}  // namespace korvex
