#include <csignal>

#include "sparse/held_signals.h"

namespace kvx {

namespace {

// Puts the mask of this thread and the handlers back, also where the call throws: METIS puts
// handlers back such that they serve for one signal only.
struct HeldMask {
  sigset_t before{};
  struct sigaction terminate {
  }, abort{};

  HeldMask() {
    sigset_t held;
    sigemptyset(&held);
    sigaddset(&held, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &held, &before);
    sigaction(SIGTERM, nullptr, &terminate);
    sigaction(SIGABRT, nullptr, &abort);
  }
  ~HeldMask() {
    sigaction(SIGTERM, &terminate, nullptr);
    sigaction(SIGABRT, &abort, nullptr);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }
  HeldMask(const HeldMask&) = delete;
  HeldMask& operator=(const HeldMask&) = delete;
};

}  // namespace

void CallHeld(const std::function<void()>& call) {
  const HeldMask mask;
  call();
}

}  // namespace kvx
