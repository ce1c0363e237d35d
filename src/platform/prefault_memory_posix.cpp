// The call exists since Linux 5.14. Older systems refuse it, and the pages come one by one.
#include "platform/prefault_memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace korvex {

void PrefaultMemory(void* block, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
  // The system takes whole pages only: those inside the block.
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
