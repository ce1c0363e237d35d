// Averaged corner stresses in rows: corners that show the same numbers share one.
//
// Most corners at a node have the same average, but for its last digits, which the page does not
// have. So two corners share a row where the 14 numbers that result files show of them, six
// components and the von Mises stress of both faces, are the same six digits each. At a fold of
// plates they differ, and so they do where neighbours have opposite normals.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "shell/shell_element.h"
#include "view/page_block.h"

namespace kvx {

// Rows are numbered in the order of the corners that first have them. Numbers are not rounded:
// those of a row are its first corner's.
struct StressRows {
  std::vector<std::int32_t> rows;              // by corner
  std::vector<double> upper, lower;            // [rows x 6] SX, SY, SZ, TXY, TXZ, TYZ, global
  std::vector<double> upperMises, lowerMises;  // [rows] of the numbers before they are rounded
};

// What a row shows: the digits and the exponents of its numbers.
inline constexpr std::size_t ShownNumbers = 14;
struct ShownStress {
  std::array<std::int32_t, ShownNumbers> digits{};
  std::array<std::int16_t, ShownNumbers> exponents{};
};

// Rows by what they show: a hash table with open places.
struct StressRowTable {
  std::vector<ShownStress> shown;    // by row
  std::vector<std::int32_t> places;  // rows; -1: free. A power of two in size
};

// Adds the averaged stresses of all corners of the shells, element by element.
template <std::int32_t Nodes>
void AddStressCorners(const std::vector<korvex::ShellElement<Nodes>>& shells, StressRowTable& table,
                      StressRows& rows);

// Adds the columns PREFIX.rows, PREFIX.upper, PREFIX.lower, PREFIX.upperMises, PREFIX.lowerMises.
void AddStressColumns(const std::string& prefix, const StressRows& rows, PageBlock& block);

}  // namespace kvx
