#include <csignal>

#include "sparse/held_signals.h"

namespace kvx {

namespace {

// Puts the mask of this thread back, also where the call throws.
struct HeldMask {
  sigset_t before{};

  HeldMask() {
    sigset_t held;
    sigemptyset(&held);
    sigaddset(&held, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &held, &before);
  }
  ~HeldMask() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
  HeldMask(const HeldMask&) = delete;
  HeldMask& operator=(const HeldMask&) = delete;
};

}  // namespace

void CallHeld(const std::function<void()>& call) {
  const HeldMask mask;
  call();
}

}  // namespace kvx
