#include "skyline/panel_work.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

#include "report/check_memory.h"

namespace korvex {

namespace {

// Bytes. The work space begins at a multiple of it: a vector that crosses the boundary of two cache
// lines takes twice the time to load.
constexpr std::size_t WorkAlignment = 64;

// The rows of the tallest panel above its diagonal block.
std::int64_t CountPanelRows(const SkylineMatrix& K) {
  std::int64_t rows = 0;
  for (std::int64_t j = 0; j < CountColumns(K); ++j) {
    rows = std::max(rows, j / PanelColumns * PanelColumns - TopRow(K, j) / TileRows * TileRows);
  }
  return rows;
}

std::size_t CountValues(int threads, std::int64_t rows) {
  return static_cast<std::size_t>(threads * rows * PanelColumns) + WorkAlignment / sizeof(double);
}

// Returns false where memory cannot hold the work space.
bool TryToAllocate(int threads, std::int64_t rows, PanelWork& work) {
  const std::size_t size = CountValues(threads, rows);
  const std::uint64_t ofThreads = (static_cast<std::uint64_t>(threads) - 1) * ThreadBytes;
  if (!HasMemory(size * sizeof(double) + ofThreads, 1)) return false;
  try {
    std::vector<double>(size).swap(work.memory);
  } catch (const std::bad_alloc&) {
    return false;
  }
  work.threads = threads;
  work.rows = rows;
  return true;
}

// Sets the memory, as much as there is. Half of the threads with all rows are better than all of
// them with fewer: a panel that does not fit waits for all before it.
void AllocateWhatFits(int threads, std::int64_t rows, PanelWork& work) {
  const std::int64_t fewRows = std::min(rows, MaxSliceRows);
  for (int fewer = threads; fewer > 1; fewer /= 2) {
    if (TryToAllocate(fewer, rows, work)) return;
  }
  for (int fewer = threads; fewer > 1; fewer /= 2) {
    if (TryToAllocate(fewer, fewRows, work)) return;
  }
  if (TryToAllocate(1, rows, work) || TryToAllocate(1, fewRows, work)) return;
  StopOutOfMemory("the work space of the factorisation", CountValues(1, fewRows), sizeof(double));
}

}  // namespace

void AllocatePanelWork(const SkylineMatrix& K, int threads, std::int64_t maxRows, PanelWork& work) {
  AllocateWhatFits(threads, std::min(CountPanelRows(K), maxRows), work);
  void* start = work.memory.data();
  std::size_t space = work.memory.size() * sizeof(double);
  std::align(WorkAlignment, sizeof(double), start, space);
  work.start = static_cast<double*>(start);
}

PanelRows MemoryOf(const PanelWork& work, int number, std::int64_t first, std::int64_t panelStep) {
  // 24 doubles are a multiple of the alignment: every thread's rows are aligned.
  static_assert(PanelColumns * sizeof(double) % WorkAlignment == 0);
  return {work.start + number * work.rows * PanelColumns, work.rows, MaxSliceRows,
          first + panelStep * PanelColumns};
}

SkylineArrays ArraysOf(SkylineMatrix& K, std::vector<double>& F) {
  return {CountColumns(K), K.ColumnHeights.data(), K.DiagonalAddress.data(), K.Values.data(),
          F.data()};
}

}  // namespace korvex
