// A table of records, all zero until a row is read into them.
//
// calloc gets large blocks directly from the system. They contain zeros, and a page uses memory
// only after it is written. A count far beyond the rows of a file therefore costs addresses, not
// memory. A usual vector would write zeros to the whole block first.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <vector>

namespace korvex {

// Allocates zeroed memory; the construction of an item without a value writes nothing.
template <typename Record>
struct ZeroedAllocator {
  static_assert(std::is_trivially_copyable_v<Record>, "zeroed memory must be a record");
  using value_type = Record;

  ZeroedAllocator() = default;
  template <typename Other>
  ZeroedAllocator(const ZeroedAllocator<Other>&) {}  // NOLINT(google-explicit-constructor)

  Record* allocate(std::size_t count) {
    void* memory = std::calloc(count, sizeof(Record));
    if (memory == nullptr) throw std::bad_alloc();
    return static_cast<Record*>(memory);
  }
  void deallocate(Record* memory, std::size_t) { std::free(memory); }

  template <typename Other>
  void construct(Other*) {}
};

template <typename A, typename B>
bool operator==(const ZeroedAllocator<A>&, const ZeroedAllocator<B>&) {
  return true;
}
template <typename A, typename B>
bool operator!=(const ZeroedAllocator<A>&, const ZeroedAllocator<B>&) {
  return false;
}

// All fields of `Record` must be 0 by default. AllocateItems makes all rows of a table at once. Do
// not resize a table: rows in memory that was used before would keep its old contents.
template <typename Record>
using ZeroedTable = std::vector<Record, ZeroedAllocator<Record>>;

}  // namespace korvex
