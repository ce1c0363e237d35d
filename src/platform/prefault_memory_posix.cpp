// The request of prefault_memory.h to Linux, since its version 5.14.
#include "platform/prefault_memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace korvex {

void PrefaultMemory(void* block, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
  // Whole pages are asked for: those that lie in the block.
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t begin = (address + page - 1) / page * page;
  const std::uintptr_t end = (address + bytes) / page * page;
  if (begin >= end) return;
  static_cast<void>(
      madvise(static_cast<char*>(block) + (begin - address), end - begin, MADV_POPULATE_WRITE));
#else
  static_cast<void>(block);
  static_cast<void>(bytes);
#endif
}

}  // namespace korvex
