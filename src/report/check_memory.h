// Allocations whose size the model file decides: what memory cannot hold ends the run with a notice
// that says what was to be allocated and how large it is.
//
// The size alone tells, before anything is touched: systems that promise more memory than there is
// would otherwise let the process fill it and then kill it.
//
// What is left out are the blocks of a few kilobytes that every run takes, of streams and texts.
// They fail only where a limit leaves nothing for any model; the run driver then says just that.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>

namespace korvex {

// Throws a Stop: "Not enough memory for 2000000000 nodal points: 44.7035 GB." `what` are `count`
// items of `itemSize` bytes; a GB has 2^30 bytes.
[[noreturn]] void StopOutOfMemory(const std::string& what, std::uint64_t count,
                                  std::uint64_t itemSize);

// Throws a Stop unless memory can hold the items.
void CheckMemory(const std::string& what, std::uint64_t count, std::uint64_t itemSize);

// Runs `allocate`, which is about to allocate the items, where memory can hold them; throws a Stop
// where it cannot or the allocation fails.
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

// Makes room for `count` items in `items`, which is empty; no memory is touched.
template <typename Vector>
void ReserveItems(const std::string& what, std::size_t count, Vector& items) {
  AllocateOrStop(what, count, sizeof(typename Vector::value_type), [&] { items.reserve(count); });
}

// Gives `items`, a vector, `count` items as its allocator makes them, in place of what it held.
template <typename Vector>
void AllocateItems(const std::string& what, std::size_t count, Vector& items) {
  AllocateOrStop(what, count, sizeof(typename Vector::value_type),
                 [&] { Vector(count).swap(items); });
}

}  // namespace korvex
