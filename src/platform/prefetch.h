// A hint to the processor's caches: memory that will be read soon.
//
// The hint changes only the time. GCC and Clang have it; other compilers do nothing.
#pragma once

namespace korvex {

// Requests the cache line at `address`.
inline void Prefetch(const void* address) {
#if defined(__GNUC__)
  __builtin_prefetch(address);
#else
  static_cast<void>(address);
#endif
}

}  // namespace korvex
