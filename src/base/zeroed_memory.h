// Memory for large tables that begin as zeros.
//
// The system clears the pages of a new block before it hands them over. std::calloc knows this;
// clearing gigabytes once more takes half as long as getting them.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace korvex {

// An allocator whose blocks are zero. A vector that grows by resize(size) takes the numbers as they
// are in its block: zero where the block has not been used, else what was there. T: double, or
// another plain number.
template <typename T>
struct ZeroedMemory {
  using value_type = T;

  ZeroedMemory() = default;
  template <typename Other>
  // NOLINTNEXTLINE(google-explicit-constructor): vectors convert their allocators.
  ZeroedMemory(const ZeroedMemory<Other>&) {}

  T* allocate(std::size_t count) {
    if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw std::bad_alloc();
    void* const block = std::calloc(count, sizeof(T));
    if (block == nullptr) throw std::bad_alloc();
    return static_cast<T*>(block);
  }
  void deallocate(T* block, std::size_t) { std::free(block); }

  void construct(T*) {}
  template <typename Value>
  void construct(T* place, const Value& value) {
    *place = value;
  }

  friend bool operator==(const ZeroedMemory&, const ZeroedMemory&) { return true; }
  friend bool operator!=(const ZeroedMemory&, const ZeroedMemory&) { return false; }
};

}  // namespace korvex
