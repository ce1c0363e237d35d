// The progress that a factorisation shows on the console.
#pragma once

#include <cstdint>

namespace korvex {

// Whether a solution reports its progress on the console.
enum class SolverProgress { Silent, Printed };

// Prints the share of columns done behind column j of n where it is a multiple of 20 percent. Many
// columns share a percentage; each print but the last steps back over itself, so that the next
// overwrites it.
void PrintProgress(std::int64_t j, std::int64_t n);

}  // namespace korvex
