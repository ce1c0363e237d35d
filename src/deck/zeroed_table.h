// A table of records that are all zero until a row is read into them, however many there are.
//
// The C library takes large blocks fresh from the system, which hands out zeros and gives a page of
// memory only where it is written to. A count far beyond the rows that a file holds therefore costs
// addresses, not memory. A vector of the usual kind would write all its zeros first.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <vector>

namespace korvex {

// Gives zeroed memory, and leaves it as it is where an item is to be constructed without a value.
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

// All fields of `Record` must be 0 by default. A table gets all its rows at once, by AllocateItems:
// resized twice, its rows would hold what stood in the memory before.
template <typename Record>
using ZeroedTable = std::vector<Record, ZeroedAllocator<Record>>;

}  // namespace korvex
