// Windows has no such call: it provides each page when it is first used.
#include "platform/prefault_memory.h"

namespace korvex {

void PrefaultMemory(void*, std::size_t) {}

}  // namespace korvex
