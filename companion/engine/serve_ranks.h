// What the ranks other than 0 do (ranks/ranks.h): they wait for what rank 0 tells them, until that
// is the end.
#pragma once

#include "engine/engine_settings.h"

namespace kvx {

// Whatever fails is told to rank 0, which says it. guard: for the long work (engine_settings.h).
void ServeRanks(const CallGuard& guard);

}  // namespace kvx
