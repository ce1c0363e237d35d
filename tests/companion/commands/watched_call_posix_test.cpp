// Calls that never come back by themselves, in a child process that is interrupted. POSIX only.
#include "commands/watched_call.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "commands/plate_runs_posix.h"
#include "commands/terminal.h"
#include "support/read_bytes.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using korvex::test::TempFolder;
using korvex::test::WriteFile;

// Forks a child that does the work. Returns its status as a shell gives it; 128 + SIGALRM where it
// has waited for ever.
template <typename Work>
int RunInChild(const std::filesystem::path& folder, const Work& work) {
  const pid_t child = fork();
  if (child == 0) {
    constexpr unsigned LongestSeconds = 60;
    alarm(LongestSeconds);
    for (const int each : ListEndSignals()) std::signal(each, SIG_DFL);  // as at a terminal
    if (chdir(folder.c_str()) == 0) work();
    _exit(0);
  }
  return AwaitKvx(child);
}

// Waits for ever.
void SendSelf(int signal) {
  kill(getpid(), signal);
  for (;;) pause();
}

// What both have to remove is gone, the engine's first.
TEST(WatchedCall, EndsTheProgramWhereTheCallDoesNotLook) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const TempFolder folder;
    const int status = RunInChild(folder.Path(), [&] {
      CatchInterrupts();
      Progress progress;
      const EngineSettings settings = WatchCalls({}, progress, [] { WriteFile("order", "2"); });
      MakeGuarded(
          settings, [&] { SendSelf(signal); },
          [] {
            WriteFile("order", "1");
            WriteFile("engine", "removed");
          });
    });
    EXPECT_EQ(status, 130);
    EXPECT_EQ(ReadBytes(folder.Path() / "order"), "2");
    EXPECT_EQ(ReadBytes(folder.Path() / "engine"), "removed");
  }
}

// Of an interrupt that came before, too.
TEST(WatchedCall, EndsTheProgramAfterAnEarlierInterrupt) {
  const TempFolder folder;
  const int status = RunInChild(folder.Path(), [&] {
    CatchInterrupts();
    kill(getpid(), SIGINT);
    Progress progress;
    RunWatched(
        progress,
        [] {
          for (;;) pause();
        },
        [] { WriteFile("removed", ""); });
  });
  EXPECT_EQ(status, 130);
  EXPECT_TRUE(std::filesystem::exists(folder.Path() / "removed"));
}

// The first rank, which is interrupted at the same time, may end before.
TEST(WatchedCall, GivesOtherRanksTimeBeforeTheyEnd) {
  // Three looks of the second thread, and a fifth of the time that it waits after one.
  constexpr std::chrono::milliseconds Moment(60);
  const TempFolder folder;
  const int status = RunInChild(folder.Path(), [&] {
    CatchInterrupts();
    RunWatchedInSilence(
        [&] {
          kill(getpid(), SIGTERM);
          std::this_thread::sleep_for(Moment);
        },
        [] { WriteFile("removed", ""); });
  });
  EXPECT_EQ(status, 0);
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "removed"));
}

TEST(WatchedCall, EndsOtherRanksWhereTheCallDoesNotLook) {
  const TempFolder folder;
  const int status = RunInChild(folder.Path(), [&] {
    CatchInterrupts();
    RunWatchedInSilence([] { SendSelf(SIGTERM); }, [] { WriteFile("removed", ""); });
  });
  EXPECT_EQ(status, 130);
  EXPECT_TRUE(std::filesystem::exists(folder.Path() / "removed"));
}

TEST(WatchedCall, LetsTheCallEndAndThrow) {
  Progress progress;
  const auto never = [] { ADD_FAILURE(); };
  int calls = 0;
  for (int k = 0; k < 200; ++k)
    RunWatched(
        progress, [&] { ++calls; }, never);
  EXPECT_EQ(calls, 200);
  EXPECT_THROW(RunWatched(
                   progress, [] { throw std::runtime_error("x"); }, never),
               std::runtime_error);
  const EngineSettings settings = WatchCalls({}, progress, never);
  MakeGuarded(
      settings, [&] { ++calls; }, never);
  MakeGuarded(
      {}, [&] { ++calls; }, never);
  EXPECT_EQ(calls, 202);
}

}  // namespace
}  // namespace kvx::test
