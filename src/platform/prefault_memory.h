// Gets the memory of a large block from the system at once.
//
// Pages are otherwise given one by one, each when it is first touched: an interruption for every
// 4 kB, which takes longer than clearing them does. (Large pages would be fewer, but on a virtual
// machine they may have to come from its host, which takes many times longer.)
#pragma once

#include <cstddef>

namespace korvex {

// block: memory that nothing has touched yet and that will all be needed. Its contents stay as they
// are, and so does everything else where the system cannot do it: only speed depends on it.
void PrefaultMemory(void* block, std::size_t bytes);

}  // namespace korvex
