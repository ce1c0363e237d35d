// How much memory this process can still get, so that a size that cannot be held is recognised
// before any of it is touched.
//
// POSIX (Linux): the least of what the machine has available, swap space included, and of what the
// container and the limit of the address space leave beyond what the process has. A system that
// promises more than that would kill the process that fills it. Windows: the commit charge left.
#pragma once

#include <cstdint>
#include <limits>

namespace korvex {

inline constexpr std::uint64_t UnknownMemory = std::numeric_limits<std::uint64_t>::max();

// In bytes; UnknownMemory where the system does not tell.
std::uint64_t ReadFreeMemory();

}  // namespace korvex
