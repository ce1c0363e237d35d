// Signals that end a program, held back for a while.
//
// METIS has handlers of its own for SIGTERM and SIGABRT while it works, which give its work up with
// an error and lose the wish to end; a thread that METIS does not know would crash in them. So the
// thread that calls METIS holds SIGTERM back until METIS has returned, and the threads that there
// are beside it hold it back always.
#pragma once

#include <functional>

namespace kvx {

// Makes the call; a SIGTERM to this thread comes after it. Threads that the call starts hold it
// back for ever. What the call throws goes on.
void CallHeld(const std::function<void()>& call);

}  // namespace kvx
