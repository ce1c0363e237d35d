// The memory of a system K u = F besides the entries of its matrix:
//   ColumnHeights (4 bytes), DiagonalAddress (8), diagonal entry, load and displacement (8 each)
// for each equation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "skyline/skyline_matrix.h"

namespace korvex {

// Bytes for each equation, without the entries above the diagonal.
inline constexpr std::uint64_t BytesPerEquation =
    sizeof(std::int32_t) + sizeof(std::int64_t) + 3 * sizeof(double);

// Reserves the tables of a system of n = `equations`, without writing to them.
// what: the system's name in the message.
// Throws a Stop where memory cannot hold the tables and a matrix of diagonal entries alone.
void ReserveSystem(const std::string& what, std::int32_t equations, SkylineMatrix& K,
                   std::vector<double>& loads, std::vector<double>& displacements);

}  // namespace korvex
