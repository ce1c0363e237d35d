#include "skyline/panel_pipeline.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>

#include "report/check_memory.h"
#include "skyline/other_nan.h"
#include "skyline/panel_work.h"
#include "workers/run_threads.h"

namespace korvex {

namespace {

// What the threads share. The flags are changed under the mutex, so that nobody who is about to
// sleep misses a change, and read without it.
struct Pipeline {
  const PanelRoutines& routines;
  const SkylineMatrix& K;
  SkylineArrays arrays;
  const PanelWork& work;
  std::int64_t panels;
  ColumnCounter& columns;                       // of the caller's thread
  std::int64_t counted = 0;                     // panels, by the caller's thread
  std::atomic<std::int64_t> next{0};            // the first panel that nobody has taken
  std::atomic<std::int64_t> tested{0};          // all panels before have no other NaN
  std::atomic<std::int64_t> end{0};             // the first panel that has one, or `panels`
  std::atomic<bool> isStopped{false};           // a thread has failed: nobody goes on
  std::vector<std::atomic<bool>> isFinished{};  // [panels]
  std::mutex mutex{};
  std::condition_variable changed{};
};

// Looks before a thread goes to sleep, some ten microseconds: to be woken takes longer, and most
// waits are shorter. Between looks the thread lets others run, on which it may be waiting.
constexpr int LooksBeforeSleep = 100;

template <typename Condition>
void WaitFor(Pipeline& pipeline, const Condition& condition) {
  for (int look = 0; look < LooksBeforeSleep; ++look) {
    if (condition()) return;
    std::this_thread::yield();
  }
  std::unique_lock<std::mutex> lock(pipeline.mutex);
  pipeline.changed.wait(lock, condition);
}

template <typename Flag, typename Value>
void Announce(Pipeline& pipeline, Flag& flag, Value value) {
  {
    const std::lock_guard<std::mutex> lock(pipeline.mutex);
    flag = value;
  }
  pipeline.changed.notify_all();
}

std::atomic<bool>& IsFinished(Pipeline& pipeline, std::int64_t panel) {
  return pipeline.isFinished[static_cast<std::size_t>(panel)];
}

std::int64_t EndColumn(const Pipeline& pipeline, std::int64_t panel) {
  return std::min((panel + 1) * PanelColumns, pipeline.arrays.n);
}

// Tests a panel and waits until all panels before are tested. Returns whether it may be factorised:
// not if it or one before has another NaN, or a thread has failed.
bool MayBegin(Pipeline& pipeline, std::int64_t panel) {
  const bool isOther = HasOtherNaN(pipeline.K, panel * PanelColumns, EndColumn(pipeline, panel),
                                   pipeline.routines.sum);
  WaitFor(pipeline,
          [&] { return pipeline.tested == panel || pipeline.end <= panel || pipeline.isStopped; });
  if (pipeline.end <= panel || pipeline.isStopped) return false;
  if (isOther) {
    Announce(pipeline, pipeline.end, panel);
  } else {
    Announce(pipeline, pipeline.tested, panel + 1);
  }
  return !isOther;
}

// The row down to which a panel can be reduced: all panels are finished that the rows from `row` on
// belong to.
std::int64_t FindReadyRows(Pipeline& pipeline, const Panel& panel, std::int64_t row) {
  while (row < panel.first && IsFinished(pipeline, row / PanelColumns)) {
    row = (row / PanelColumns + 1) * PanelColumns;
  }
  return row;
}

// Returns false if a thread has failed.
bool FactorPanel(Pipeline& pipeline, std::int64_t index, int number) {
  const std::int64_t first = index * PanelColumns;
  Panel panel;
  pipeline.routines.begin(pipeline.arrays, first,
                          MemoryOf(pipeline.work, number, first, pipeline.work.threads), panel);
  // A panel of more rows than memory holds is reduced in one step (panel/panel.h).
  const bool isOneStep = first - panel.top > panel.memory.rowCount;
  std::int64_t ready = panel.top;
  while (ready < first) {
    WaitFor(pipeline,
            [&] { return IsFinished(pipeline, ready / PanelColumns) || pipeline.isStopped; });
    if (pipeline.isStopped) return false;
    ready = FindReadyRows(pipeline, panel, ready);
    if (ready == first || !isOneStep) pipeline.routines.reduce(pipeline.arrays, ready, panel);
  }
  pipeline.routines.finish(pipeline.arrays, panel);
  Announce(pipeline, IsFinished(pipeline, index), true);
  return true;
}

// Counts panels that have been finished, in ascending order, one by one as one thread would do it.
void CountFinished(Pipeline& pipeline) {
  while (pipeline.counted < pipeline.panels && IsFinished(pipeline, pipeline.counted)) {
    const std::int64_t panel = pipeline.counted++;
    CountColumns(pipeline.K, panel * PanelColumns, EndColumn(pipeline, panel), pipeline.columns);
  }
}

// A thread waits only for panels that were taken before its own, so the one with the lowest panel
// never waits for long, and no two wait for each other.
void TakePanels(Pipeline& pipeline, int number) {
  while (!pipeline.isStopped) {
    const std::int64_t panel = pipeline.next.fetch_add(1);
    if (panel >= pipeline.end || !MayBegin(pipeline, panel)) return;
    if (!FactorPanel(pipeline, panel, number)) return;
    if (number == 0) CountFinished(pipeline);
  }
}

void TakePanelsOrStop(Pipeline& pipeline, int number) {
  try {
    TakePanels(pipeline, number);
  } catch (...) {
    Announce(pipeline, pipeline.isStopped, true);
    throw;
  }
}

// Below this, in units of work (work_share.h), starting threads takes as long as it saves: the work
// takes about half a millisecond, a thread some fifty microseconds.
constexpr double MinUnits = 2e7;

// The units of a column of height h that wait for the panel before: its last 24 rows, 2 x 24 h, and
// a share of handing over a panel, two microseconds. No number of threads shortens them.
constexpr double WaitingUnitsPerEntry = 48.0;
constexpr double WaitingUnitsPerColumn = 4000.0;

}  // namespace

int CountUsefulThreads(const SkylineMatrix& K, int threads) {
  if (threads < 2) return 1;
  double all = 0.0, waiting = 0.0;
  for (const std::int32_t height : K.ColumnHeights) {
    const auto h = static_cast<double>(height);
    all += h * h;
    waiting += WaitingUnitsPerEntry * h + WaitingUnitsPerColumn;
  }
  if (all < MinUnits) return 1;
  return std::clamp(static_cast<int>(std::min(all / waiting, 1e6)), 1, threads);
}

std::int64_t FactorPanelsOnThreads(const PanelRoutines& routines, SkylineMatrix& K,
                                   std::vector<double>& F, int threads, ColumnCounter& columns,
                                   std::int64_t maxRows) {
  const std::int64_t n = CountColumns(K);
  const std::int64_t panels = (n + PanelColumns - 1) / PanelColumns;
  const auto useful =
      static_cast<int>(std::clamp<std::int64_t>(threads, 1, std::max<std::int64_t>(panels, 1)));
  PanelWork work;
  Pipeline pipeline{routines, K, ArraysOf(K, F), work, panels, columns};
  pipeline.end = panels;
  // First, since the work space makes do with what is left.
  AllocateItems("the panels of the factorisation", static_cast<std::size_t>(panels),
                pipeline.isFinished);
  AllocatePanelWork(K, useful, maxRows, work);
  RunThreads(work.threads, [&](int number) { TakePanelsOrStop(pipeline, number); });
  CountFinished(pipeline);
  return std::min(pipeline.end * PanelColumns, n);
}

}  // namespace korvex
