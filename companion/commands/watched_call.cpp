#include "commands/watched_call.h"

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <system_error>
#include <thread>

#include "commands/exit_status.h"
#include "commands/speak.h"
#include "ranks/ranks.h"
#include "sparse/held_signals.h"

namespace kvx {

namespace {

struct Watch {
  std::mutex mutex;  // held while the program is ended: until then the call cannot come back
  std::condition_variable over;
  bool isOver = false;
};

// cleanUp and tell may fail where memory is at its end: the program ends in any case.
[[noreturn]] void EndProgram(const std::function<void()>& cleanUp,
                             const std::function<void()>& tell) {
  for (const auto* const step : {&cleanUp, &tell}) {
    try {
      (*step)();
    } catch (...) {  // NOLINT(bugprone-empty-catch): there is nobody to tell
    }
  }
  AbortRanks(ExitInterrupted);
  std::_Exit(ExitInterrupted);
}

void LookOut(Watch& watch, const std::function<void()>& cleanUp,
             const std::function<void()>& tell) {
  constexpr std::chrono::milliseconds Interval(20);
  std::unique_lock<std::mutex> lock(watch.mutex);
  while (!watch.over.wait_for(lock, Interval, [&] { return watch.isOver; })) {
    if (IsInterrupted()) EndProgram(cleanUp, tell);
  }
}

// Ends the second thread, also where the call throws.
struct Lookout {
  Watch& watch;
  std::thread thread;

  ~Lookout() {
    {
      const std::lock_guard<std::mutex> lock(watch.mutex);
      watch.isOver = true;
    }
    watch.over.notify_one();
    if (thread.joinable()) thread.join();
  }
};

// Makes the call while a second thread looks out for interrupts. tell: is called where one came.
void CallBesideWatch(const std::function<void()>& call, const std::function<void()>& cleanUp,
                     const std::function<void()>& tell) {
  Watch watch;
  Lookout lookout{watch, {}};
  try {
    CallHeld([&] { lookout.thread = std::thread([&] { LookOut(watch, cleanUp, tell); }); });
  } catch (const std::system_error&) {
    // Without a thread the interrupt waits for the end of the call.
  }
  call();
}

}  // namespace

void RunWatched(Progress& progress, const std::function<void()>& call,
                const std::function<void()>& cleanUp) {
  CallBesideWatch(call, cleanUp, [&] {
    EndProgress(progress);
    Complain("kvx", "interrupted.");
    std::cout.flush();
  });
}

void RunWatchedInSilence(const std::function<void()>& call, const std::function<void()>& cleanUp) {
  CallBesideWatch(call, cleanUp, [] {});
}

EngineSettings WatchCalls(const EngineSettings& settings, Progress& progress,
                          const std::function<void()>& cleanUp) {
  EngineSettings watched = settings;
  watched.guard = [&progress, cleanUp](const std::function<void()>& call,
                                       const std::function<void()>& own) {
    RunWatched(progress, call, [&] {
      own();
      cleanUp();
    });
  };
  return watched;
}

}  // namespace kvx
