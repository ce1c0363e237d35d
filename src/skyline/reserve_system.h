// The memory that the solution of a system takes besides the entries of its matrix.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "skyline/skyline_matrix.h"

namespace korvex {

// What the solution of a system needs for each equation, besides the entries above the diagonal:
// height, address, diagonal, load and displacement.
inline constexpr std::uint64_t BytesPerEquation =
    sizeof(std::int32_t) + sizeof(std::int64_t) + 3 * sizeof(double);

// Makes room for what a system of `equations` holds besides the entries of its matrix; no memory is
// touched. `what` names the system. Throws a Stop where memory cannot hold it, with the matrix at
// its smallest.
void ReserveSystem(const std::string& what, std::int32_t equations, SkylineMatrix& K,
                   std::vector<double>& loads, std::vector<double>& displacements);

}  // namespace korvex
