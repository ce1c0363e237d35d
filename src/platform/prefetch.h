// A hint to the processor's caches.
#pragma once

namespace korvex {

// Asks for the cache line at `address`, which will be read soon. Changes nothing but the time.
inline void Prefetch(const void* address) {
#if defined(__GNUC__)
  __builtin_prefetch(address);
#else
  static_cast<void>(address);
#endif
}

}  // namespace korvex
