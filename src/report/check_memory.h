// Allocations whose size depends on the model file. If the memory is too small, the run ends with a
// notice that names what was to be allocated and its size.
//
// The size is compared with the free memory before the allocation, because some systems grant more
// memory than they have and kill the process when it uses the memory.
//
// Blocks of a few kilobytes, for streams and texts, are not checked here. They fail only where no
// model could be solved; the run driver then reports "Not enough memory."
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>

namespace korvex {

// Throws a Stop: "Not enough memory for 2000000000 nodal points: 44.7035 GB."
// what: the name of the items; count: their number; itemSize: bytes of one item. A GB has 2^30
// bytes.
[[noreturn]] void StopOutOfMemory(const std::string& what, std::uint64_t count,
                                  std::uint64_t itemSize);

// Whether the free memory holds the items: for callers that can do with fewer.
bool HasMemory(std::uint64_t count, std::uint64_t itemSize);

// What a further thread takes besides its data, in bytes: the usual stack, 8 MB, and the addresses
// that the C library reserves for its heap, up to 128 MB. They count where addresses are limited.
inline constexpr std::uint64_t ThreadBytes = std::uint64_t{136} << 20U;

// How many of `threads` threads the free memory holds at once, at least 1. In bytes, up to 2^62:
// common: of data that all of them need; each: of data of each.
int CountThreadsInMemory(int threads, std::uint64_t common, std::uint64_t each);

// Throws a Stop where the free memory is smaller than the items. Arguments as above.
void CheckMemory(const std::string& what, std::uint64_t count, std::uint64_t itemSize);

// To be called right after a file could not be opened: throws std::bad_alloc if the reason was not
// the file but memory, of which opening takes some.
void CheckOpeningMemory();

// Checks the memory and calls `allocate`, which allocates the items. Throws a Stop where the memory
// is too small or the allocation fails. Arguments as above.
template <typename Allocation>
void AllocateOrStop(const std::string& what, std::uint64_t count, std::uint64_t itemSize,
                    Allocation allocate) {
  CheckMemory(what, count, itemSize);
  try {
    allocate();
  } catch (const std::bad_alloc&) {
    StopOutOfMemory(what, count, itemSize);
  } catch (const std::length_error&) {
    StopOutOfMemory(what, count, itemSize);
  }
}

// Reserves capacity for `count` items in `items`, an empty vector; no item is made yet. Throws a
// Stop where the memory is too small.
template <typename Vector>
void ReserveItems(const std::string& what, std::size_t count, Vector& items) {
  AllocateOrStop(what, count, sizeof(typename Vector::value_type), [&] { items.reserve(count); });
}

// Replaces the contents of `items`, a vector, by `count` items that its allocator makes. Throws a
// Stop where the memory is too small.
template <typename Vector>
void AllocateItems(const std::string& what, std::size_t count, Vector& items) {
  AllocateOrStop(what, count, sizeof(typename Vector::value_type),
                 [&] { Vector(count).swap(items); });
}

}  // namespace korvex
