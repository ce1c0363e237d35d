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

// What is done after an interrupt, and how long the call may still come back before.
struct Ending {
  const std::function<void()>& cleanUp;
  const std::function<void()>& tell;
  std::chrono::milliseconds patience;
};

void LookOut(Watch& watch, const Ending& ending) {
  constexpr std::chrono::milliseconds Interval(20);
  std::unique_lock<std::mutex> lock(watch.mutex);
  const auto isOver = [&] { return watch.isOver; };
  while (!watch.over.wait_for(lock, Interval, isOver)) {
    if (!IsInterrupted()) continue;
    if (watch.over.wait_for(lock, ending.patience, isOver)) return;
    EndProgram(ending.cleanUp, ending.tell);
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

// Makes the call while a second thread looks out for interrupts.
void CallBesideWatch(const std::function<void()>& call, const Ending& ending) {
  Watch watch;
  Lookout lookout{watch, {}};
  try {
    CallHeld([&] { lookout.thread = std::thread([&] { LookOut(watch, ending); }); });
  } catch (const std::system_error&) {
    // Without a thread the interrupt waits for the end of the call.
  }
  call();
}

}  // namespace

void RunWatched(Progress& progress, const std::function<void()>& call,
                const std::function<void()>& cleanUp) {
  const std::function<void()> tell = [&] {
    EndProgress(progress);
    Complain("kvx", "interrupted.");
    std::cout.flush();
  };
  CallBesideWatch(call, {cleanUp, tell, std::chrono::milliseconds(0)});
}

void RunWatchedInSilence(const std::function<void()>& call, const std::function<void()>& cleanUp) {
  // mpirun interrupts all ranks at once, and kills them a second later. A rank that ended at once
  // could leave the first one waiting for it, where no second thread looks out, until it is killed
  // with its files.
  constexpr std::chrono::milliseconds Patience(300);
  CallBesideWatch(call, {cleanUp, [] {}, Patience});
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
