// The threads of commands that have no option for them: results do not depend on their number.
#pragma once

namespace kvx {

// More threads than any machine has that this program was made for.
inline constexpr int MostThreads = 512;

// The cores that this process may use, at most MostThreads (platform/usable_cores.h).
int CountCores();

}  // namespace kvx
