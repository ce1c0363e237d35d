// The factorisation of a skyline matrix by panels of 24 columns, in vector registers.
//
// Every entry of the factor receives its own terms one by one, k ascending, products and
// differences rounded separately: the bits are those of the plain column algorithm. But different
// entries do not wait for each other, and so the entries of a tile of 6 rows by 24 columns are
// reduced side by side (active columns: Bathe 1996, sec. 8.2.3; register tiles: Goto & van de Geijn
// 2008, sec. 4). Here is what the routines of the different vector lengths have in common with
// their caller. It is plain data, because no code may be shared between units compiled for
// different processors.
#pragma once

#include <cstdint>

namespace korvex {

// Columns of a panel: four nodes.
constexpr std::int64_t PanelColumns = 24;

// Rows of a tile: a node. Tiles and panels begin at multiples of it.
constexpr std::int64_t TileRows = 6;

// Rows of a panel held row by row at a time: 24 columns of them (190 kB) stay in the second cache.
constexpr std::int64_t MaxSliceRows = 168 * TileRows;

// A skyline matrix and its load, as SolveSkyline has them (skyline_matrix.h).
struct SkylineArrays {
  std::int64_t n;
  const std::int32_t* columnHeights;    // [n]
  const std::int64_t* diagonalAddress;  // [n]
  double* values;
  double* load;  // [n]
};

// A routine that factorises the columns `first` (a multiple of PanelColumns) to at most
// first + PanelColumns - 1 of K and reduces their load; all columns before are done.
// work: sliceRows x PanelColumns, scratch, aligned to 64 bytes; sliceRows: a multiple of TileRows.
using PanelRoutine = void (*)(const SkylineArrays& K, std::int64_t first, double* work,
                              std::int64_t sliceRows);

void FactorPanel128(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows);
void FactorPanel256(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows);
void FactorPanel512(const SkylineArrays& K, std::int64_t first, double* work,
                    std::int64_t sliceRows);

}  // namespace korvex
