#include "commands/core_count.h"

#include <algorithm>

#include "platform/usable_cores.h"

namespace kvx {

int CountCores() { return std::min(korvex::CountUsableCores(), MostThreads); }

}  // namespace kvx
