// Windows gives pages on touch alone.
#include "platform/prefault_memory.h"

namespace korvex {

void PrefaultMemory(void*, std::size_t) {}

}  // namespace korvex
