// The work space of the factorisation by panels, for one thread or several.
#pragma once

#include <cstdint>
#include <vector>

#include "skyline/panel/panel.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// Rows for which there is room at most, 12.6 MB: a closed ring or an arrow has single columns as
// tall as the structure is long, and where all columns are taller, K takes more than 17 GB.
constexpr std::int64_t MaxPanelRows = 65 * MaxSliceRows;

// Room for the rows of the tallest panel, or for as many as are allowed, once for each thread.
struct PanelWork {
  std::vector<double> memory;
  double* start = nullptr;  // aligned, in `memory`
  int threads = 0;          // that have room
  std::int64_t rows = 0;    // of each of them
};

// maxRows: at most as many for each thread, a multiple of TileRows.
// Where memory is short there are fewer threads, fewer rows, or both: one thread with the rows of a
// slice at least. Throws a Stop where memory cannot hold these.
void AllocatePanelWork(const SkylineMatrix& K, int threads, std::int64_t maxRows, PanelWork& work);

// The memory of thread number 0, 1, ... for the panel that begins with column `first`, where the
// next panel is panelStep panels away.
PanelRows MemoryOf(const PanelWork& work, int number, std::int64_t first, std::int64_t panelStep);

// K and F as the routines read them. F: n.
SkylineArrays ArraysOf(SkylineMatrix& K, std::vector<double>& F);

}  // namespace korvex
