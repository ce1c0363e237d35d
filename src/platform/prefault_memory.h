// Gets all memory pages of a large block from the system with one call.
//
// Otherwise the system provides each page of 4 kB when it is first used: one interrupt per page,
// which takes longer than writing the zeros. (Large pages would need fewer interrupts. But on a
// virtual machine they may have to come from the host, which takes many times longer.)
#pragma once

#include <cstddef>

namespace korvex {

// block: `bytes` bytes of memory, not used yet, all of which will be needed. Its contents do not
// change. Where the system has no such call, nothing happens: only the speed depends on it.
void PrefaultMemory(void* block, std::size_t bytes);

}  // namespace korvex
