// How much memory this process can still get. A request that is too large is thus recognised before
// any of its memory is used.
//
// POSIX (Linux): the smallest of three values: the available memory of the machine with its free
// swap space; the container's limit minus the memory in use; the address-space limit minus the
// addresses in use. Linux may grant a larger request and kill the process later, when it uses the
// memory. Windows: the rest of the commit limit or of the address space.
#pragma once

#include <cstdint>
#include <limits>

namespace korvex {

inline constexpr std::uint64_t UnknownMemory = std::numeric_limits<std::uint64_t>::max();

// Returns bytes; UnknownMemory where the system gives no figure.
std::uint64_t ReadFreeMemory();

// Which of the values is the smallest now. Machine also where the system gives no figure.
enum class MemoryBound { Machine, Container, Addresses };
MemoryBound FindMemoryBound();

}  // namespace korvex
