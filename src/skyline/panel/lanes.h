// Forward reduction and back substitution of several loads side by side, in the lanes of vectors:
//   y(j) = F(j) - sum l(k, j) y(k)             k ascending
//   u(i) = y(i) / d(i) - sum l(i, j) u(j)      j ascending
//
// Each lane has a load of its own and receives its terms one by one, in the order of the single
// routines (solve_skyline_plain.h): it has their bits, unless a NaN occurs (its sign: see
// factor_skyline.cpp). The factor is read once for all lanes.
//
// As in panel.h, the routines of all vector lengths share this header with their caller, and it
// holds plain data only.
#pragma once

#include <cstdint>

#include "skyline/panel/panel.h"

namespace korvex {

// The number of lanes is a multiple of LaneStep, the doubles of the longest vector. With MaxLanes,
// a tile of 6 columns fills the vector registers.
constexpr std::int64_t LaneStep = 8;
constexpr std::int64_t MaxLanes = 24;

// Rows of a block of the back substitution: in each column, the entries of one cache line.
constexpr std::int64_t BlockRows = 8;

// A column to the right of a block of rows that reaches the block.
struct ReachingColumn {
  std::int64_t top;     // top row
  const double* entry;  // of the block's last row; the rows above follow
  const double* u;      // u(j), of one load or of all lanes
};

// A block of rows begin .. end - 1 and the columns that reach it, in descending order.
struct BlockColumns {
  std::int64_t begin, end;
  const ReachingColumn* columns;  // [count]
  std::int64_t count;
  double* multipliers;  // BlockRows x count, scratch
};

// The arrays of a factor, and values of the lanes: n x lanes, row-major.
struct LaneArrays {
  SkylineArrays K;    // its load is not used
  std::int64_t size;  // stored entries
  std::int64_t lanes;
  double* values;
};

// Computes y(first) .. y(end - 1) in place. All y before are known.
// first, end: multiples of TileRows; end may be n instead.
using ReduceLanesRoutine = void (*)(const LaneArrays& arrays, std::int64_t first, std::int64_t end);

// Computes u of the rows of a block in place, from y. All u below are known.
using SubstituteLanesRoutine = void (*)(const LaneArrays& arrays, const BlockColumns& block);

// The routines of a vector length.
struct LaneRoutines {
  ReduceLanesRoutine reduce;
  SubstituteLanesRoutine substitute;
};

void ReduceLanes128(const LaneArrays& arrays, std::int64_t first, std::int64_t end);
void ReduceLanes256(const LaneArrays& arrays, std::int64_t first, std::int64_t end);
void ReduceLanes512(const LaneArrays& arrays, std::int64_t first, std::int64_t end);
void SubstituteLanes128(const LaneArrays& arrays, const BlockColumns& block);
void SubstituteLanes256(const LaneArrays& arrays, const BlockColumns& block);
void SubstituteLanes512(const LaneArrays& arrays, const BlockColumns& block);

}  // namespace korvex
