// The factorisation of a skyline matrix by panels of 24 columns, in vector registers:
//   A(i, j) -= A(k, i) A(k, j),  k ascending;  j: a column of the panel, i < j: a row
//
//              columns i .. i + 5      panel: columns first .. first + 23
//                   |                            |
//     \                              +--------+--------+--------+  top of the panel
//       \       +--------+           |        |        |        |
//         \     |        |           |        |        |        |  slice: up to 1008 rows,
//           \   | A(k,i) |  . . . .  | A(k,j) |        |        |  copied row by row
//             \ |        |           |        |        |        |
//               +--------+           +--------+--------+--------+
//                 \      |  . . . .  | A(i,j) |        |        |  tile: rows i .. i + 5,
//                    \   |           |        |        |        |  the dofs of a node
//                       \            +--------+--------+--------+
//                          \         |        |        |        |
//                             \      +--------+--------+--------+  row `first`
//                                    |  \     |        |        |
//                                       \     |        |        |  diagonal block: 24 rows
//                                          \  |        |        |
//                                             |  \     |        |
//                                        |
//                                      strip: the columns of 1 to 3 vectors
//
// The entries of a tile and a strip stay in registers while k runs over the rows of a slice. Each
// entry receives its own terms one by one, k ascending, products and differences rounded
// separately: the bits of the plain column algorithm. Different entries do not depend on each
// other, so they are reduced side by side (active columns: Bathe 1996, sec. 8.2.3; register tiles:
// Goto & van de Geijn 2008, sec. 4).
//
// The routines of all vector lengths share this header with their caller. It holds plain data only:
// a function shared by units compiled for different processors may be linked in the wrong version.
#pragma once

#include <cstdint>

namespace korvex {

// Columns of a panel: the dofs of four nodes.
constexpr std::int64_t PanelColumns = 24;

// Rows of a tile: the dofs of a node. Tiles and panels begin at multiples of it.
constexpr std::int64_t TileRows = 6;

// Largest number of rows of a slice: 24 columns of them, 190 kB, stay in the second-level cache.
constexpr std::int64_t MaxSliceRows = 168 * TileRows;

// A skyline matrix (skyline/skyline_matrix.h) and its load.
struct SkylineArrays {
  std::int64_t n;
  const std::int32_t* columnHeights;    // [n]
  const std::int64_t* diagonalAddress;  // [n]
  double* values;
  double* load;  // [n]
};

// Factorises the columns first .. min(first + PanelColumns, n) - 1 of K and reduces their load. All
// columns before are finished.
// first: a multiple of PanelColumns.
// work: sliceRows x PanelColumns, row-major, aligned to 64 bytes; scratch.
// sliceRows: the largest number of rows of a slice, a multiple of TileRows.
using FactorRoutine = void (*)(const SkylineArrays& K, std::int64_t first, double* work,
                               std::int64_t sliceRows);

// Returns the sum of values[0 .. count - 1], added in an unspecified order. A quick test: if the
// sum is not a NaN, no value is.
using SumRoutine = double (*)(const double* values, std::int64_t count);

// The routines of a vector length.
struct PanelRoutines {
  FactorRoutine factor;
  SumRoutine sum;
};

void FactorPanel128(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows);
void FactorPanel256(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows);
void FactorPanel512(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows);
double SumValues128(const double* values, std::int64_t count);
double SumValues256(const double* values, std::int64_t count);
double SumValues512(const double* values, std::int64_t count);

}  // namespace korvex
