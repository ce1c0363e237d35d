// What the ranks other than 0 do (ranks/ranks.h): they wait for what rank 0 tells them, until that
// is the end.
#pragma once

namespace kvx {

// Whatever fails is told to rank 0, which says it.
void ServeRanks();

}  // namespace kvx
