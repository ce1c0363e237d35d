// How long work still takes, shown to someone who waits; and the wish to end it.
//
//   Solving ... 40 %, 12 s left
//
// One line on standard error, written over and over, and taken back at the end. Nothing is shown
// where standard error is no terminal, nor in the first half second.
//
// An interrupt (Ctrl+C, SIGTERM, a terminal that is closed) sets a flag. Work looks at it through
// ShowShare and StopIfInterrupted, which throw: so files on their way are removed. Work that cannot
// look is watched (watched_call.h). A second interrupt ends the program at once; its unfinished
// files have names of their own and are removed by the next run.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "commands/time_left.h"

namespace kvx {

// The work on detail models has one name, whatever command does it.
inline constexpr const char* MakingDetailModels = "Making detail models of beams";

// Thrown where the user has interrupted the work. The program ends with ExitInterrupted.
struct Interrupted {};

// To be called once, before long work. Signals that the program was started to ignore stay ignored:
// in the background, or by nohup.
void CatchInterrupts();

// Whether there was one. Any thread may ask.
bool IsInterrupted();

// Throws Interrupted after an interrupt.
void StopIfInterrupted();

// A line that is on the screen is taken back when the object goes.
struct Progress {
  std::string what;  // "Solving"
  std::chrono::steady_clock::time_point begin{}, shown{};
  ShareHistory history;
  std::size_t width = 0;  // characters on the screen
  bool isVisible = false;

  Progress() = default;
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
};

// A line for work that begins now. what: "Solving", "Checking".
void BeginProgress(const std::string& what, Progress& progress);

// share: of the work, 0 .. 1; the time that is left is foreseen from it, after a while. Cheap
// enough to be called thousands of times a second. Throws Interrupted after an interrupt.
void ShowShare(double share, Progress& progress);

// Shows the line at once, without a share: for work that may take its time and says nothing on the
// way. begin: of all the work that this is a part of; nothing is shown in its first half second
// either. Throws Interrupted after an interrupt.
void ShowBegin(std::chrono::steady_clock::time_point begin, Progress& progress);

// ShowShare for the detail models of all beams, with a line of their own from share 0 on. of: the
// case that they belong to; empty: there is none to name.
void ShowDetailShare(double share, const std::string& of, Progress& progress);

// A line for the check of a model file of so many bytes: at once where it takes seconds.
void BeginChecking(const std::string& file, std::size_t bytes, Progress& progress);

// Takes the line back, as the end of the object does.
void EndProgress(Progress& progress);

}  // namespace kvx
