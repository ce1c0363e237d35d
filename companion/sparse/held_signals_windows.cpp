// There is no METIS here, and an interrupt has a thread of its own.
#include "sparse/held_signals.h"

namespace kvx {

void CallHeld(const std::function<void()>& call) { call(); }

}  // namespace kvx
