#include "commands/progress.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <csignal>
#include <iostream>

#include "commands/terminal.h"

namespace kvx {

namespace {

using std::chrono::duration;
using std::chrono::steady_clock;

// Work that is done sooner needs no line, and nobody reads faster.
constexpr double QuietSeconds = 0.5;
constexpr double SecondsBetween = 0.1;

// Smaller model files are checked before anyone can read what happens.
constexpr std::size_t BytesInSeconds = 20'000'000;

// A signal may touch nothing but that.
std::atomic<bool> WasInterrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void TakeInterrupt(int signal) {
  WasInterrupted = true;
  std::signal(signal, SIG_DFL);
}

void Catch(int signal) {
  if (std::signal(signal, TakeInterrupt) == SIG_IGN) std::signal(signal, SIG_IGN);
}

std::string TimeText(double seconds) {
  const auto whole = static_cast<long long>(std::ceil(seconds));
  if (whole < 120) return std::to_string(whole) + " s";
  if (whole < 7200) return std::to_string((whole + 30) / 60) + " min";
  return std::to_string((whole + 1800) / 3600) + " h";
}

// Writes the line over the one before.
void ShowLine(const std::string& line, Progress& progress) {
  const std::size_t blanks = progress.width > line.size() ? progress.width - line.size() : 0;
  std::cerr << '\r' << line << std::string(blanks, ' ') << std::flush;
  progress.width = line.size();
}

}  // namespace

void CatchInterrupts() {
  for (const int signal : ListEndSignals()) Catch(signal);
}

bool IsInterrupted() { return WasInterrupted; }

void StopIfInterrupted() {
  if (WasInterrupted) throw Interrupted{};
}

Progress::~Progress() { EndProgress(*this); }

void BeginProgress(const std::string& what, Progress& progress) {
  EndProgress(progress);
  progress.what = what;
  progress.history = {};
  progress.begin = progress.shown = steady_clock::now();
  progress.isVisible = IsTerminal(Stream::Error);
}

void ShowShare(double share, Progress& progress) {
  StopIfInterrupted();
  if (!progress.isVisible) return;
  const steady_clock::time_point now = steady_clock::now();
  const double elapsed = duration<double>(now - progress.begin).count();
  if (duration<double>(now - progress.shown).count() < SecondsBetween) return;
  progress.shown = now;
  const double done = std::clamp(share, 0.0, 1.0);
  const double left = ForeseeTimeLeft({elapsed, done}, progress.history);
  if (elapsed < QuietSeconds) return;
  std::string line =
      progress.what + " ... " + std::to_string(static_cast<int>(100.0 * done)) + " %";
  if (!std::isnan(left)) line += ", " + TimeText(left) + " left";
  ShowLine(line, progress);
}

void ShowBegin(steady_clock::time_point begin, Progress& progress) {
  StopIfInterrupted();
  if (!progress.isVisible) return;
  if (duration<double>(steady_clock::now() - begin).count() < QuietSeconds) return;
  ShowLine(progress.what + " ...", progress);
}

void ShowDetailShare(double share, const std::string& of, Progress& progress) {
  if (share == 0.0) {
    BeginProgress(MakingDetailModels + (of.empty() ? "" : " (" + of + ')'), progress);
  }
  ShowShare(share, progress);
}

void BeginChecking(const std::string& file, std::size_t bytes, Progress& progress) {
  BeginProgress("Checking " + file, progress);
  if (bytes >= BytesInSeconds) ShowBegin({}, progress);
}

void EndProgress(Progress& progress) {
  if (progress.width == 0) return;
  ShowLine("", progress);
  std::cerr << '\r' << std::flush;
}

}  // namespace kvx
