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

// Strips of a panel with vectors of 128 bits: 4 columns each.
constexpr std::int64_t MaxStrips = 6;

// The different top rows of a strip's columns, ascending. Between two of them the active lanes stay
// the same, so that one mask serves many terms.
struct Steps {
  std::int64_t rows[PanelColumns + 1];  // a larger number than any row follows the last
  int activeVectors[PanelColumns];      // leading vectors active from rows[s]
};

// Memory of a panel that its caller provides.
struct PanelRows {
  double* rows;             // rowCount x PanelColumns, row-major, aligned to 64 bytes
  std::int64_t rowCount;    // a multiple of TileRows; a panel of more rows is reduced in windows
  std::int64_t sliceRows;   // the largest number of rows of a slice, a multiple of TileRows
  std::int64_t prefetched;  // first column of the panel that will probably be next; n: none
};

// The panel's columns first .. first + columns - 1 of K while they are reduced.
struct Panel {
  PanelRows memory;  // rows windowTop .. done - 1 as they are before the division by the pivots
  std::int64_t first, columns;
  std::int64_t top;         // top row of the tallest column, rounded down to a multiple of TileRows
  std::int64_t windowTop;   // the first row in memory
  std::int64_t done;        // rows top .. done - 1 are finished
  std::int64_t commonTop;   // first row that all 24 columns reach; if columns miss, below all rows
  bool isRagged;            // top rows too different for wide strips
  Steps wide[MaxStrips];    // of the wide strips; unused if narrow strips are as wide
  Steps narrow[MaxStrips];  // of the narrow strips
  std::int64_t base[PanelColumns];  // row k of column c is K.values[base[c] - k]
  double tops[PanelColumns];        // top rows, as doubles, which vectors can compare
  double pivots[PanelColumns];
  double load[PanelColumns];
  double block[PanelColumns * PanelColumns];  // the diagonal block, row-major
};

// A panel is factorised in three steps, of which the second may be divided further:
//   1. begin: sets all of `panel`. K is only read.
//   2. reduce: finishes the rows above the diagonal block, down to row end - 1. All columns before
//      `end` are finished. end: a multiple of TileRows, at most rowCount rows below `top`; or
//      `first`.
//   3. finish: the diagonal block and the load. All rows above are finished.
// However the rows are divided, every entry receives the same terms in the same order.
// first: a multiple of PanelColumns.
using BeginPanelRoutine = void (*)(const SkylineArrays& K, std::int64_t first,
                                   const PanelRows& memory, Panel& panel);
using ReducePanelRoutine = void (*)(const SkylineArrays& K, std::int64_t end, Panel& panel);
using FinishPanelRoutine = void (*)(const SkylineArrays& K, Panel& panel);

// Returns the sum of values[0 .. count - 1], added in an unspecified order. A quick test: if the
// sum is not a NaN, no value is.
using SumRoutine = double (*)(const double* values, std::int64_t count);

// The routines of a vector length.
struct PanelRoutines {
  BeginPanelRoutine begin;
  ReducePanelRoutine reduce;
  FinishPanelRoutine finish;
  SumRoutine sum;
};

void BeginPanel128(const SkylineArrays& K, std::int64_t first, const PanelRows& memory,
                   Panel& panel);
void ReducePanel128(const SkylineArrays& K, std::int64_t end, Panel& panel);
void FinishPanel128(const SkylineArrays& K, Panel& panel);
void BeginPanel256(const SkylineArrays& K, std::int64_t first, const PanelRows& memory,
                   Panel& panel);
void ReducePanel256(const SkylineArrays& K, std::int64_t end, Panel& panel);
void FinishPanel256(const SkylineArrays& K, Panel& panel);
void BeginPanel512(const SkylineArrays& K, std::int64_t first, const PanelRows& memory,
                   Panel& panel);
void ReducePanel512(const SkylineArrays& K, std::int64_t end, Panel& panel);
void FinishPanel512(const SkylineArrays& K, Panel& panel);
double SumValues128(const double* values, std::int64_t count);
double SumValues256(const double* values, std::int64_t count);
double SumValues512(const double* values, std::int64_t count);

}  // namespace korvex
