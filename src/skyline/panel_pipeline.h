// The factorisation by panels (panel/panel.h) on several threads, with the bits of one.
//
// Each thread takes the next panel, ascending, and reduces its rows as far down as the panels that
// they belong to are finished; then it waits for the next of these. Panels of columns that do not
// reach each other do not wait for each other. Every entry receives its own terms, k ascending,
// from finished columns only, so its bits depend neither on the number of threads nor on which
// thread was faster.
//
// NaNs with other bits (other_nan.h): from the first panel on that has one, K must be as it was,
// because the plain routine goes on there. So a thread writes to its panel only after all panels up
// to it have been found free of them. These tests read K as it was: no thread writes to a panel
// that is not tested.
#pragma once

#include <cstdint>
#include <vector>

#include "skyline/column_counter.h"
#include "skyline/panel/panel.h"
#include "skyline/panel_work.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

// How many of `threads` threads shorten the factorisation of K, at least 1. K: its profile.
int CountUsefulThreads(const SkylineMatrix& K, int threads);

// Factorises the panels of K and reduces F, both in place, up to the first panel with another NaN.
// Returns this panel's first column, or n; from there on K and F are unchanged.
// F: n, without other NaNs.
// threads: at least 1; all that memory has room for are used, whether it is useful or not.
// maxRows: of each thread's work space, a multiple of TileRows. A taller panel waits for all
// before.
//
// columns: counts the finished columns in ascending order, on the caller's thread. Where its report
// throws, all threads end and the exception is passed on; K and F are then undefined.
//
// Throws a Stop where memory cannot hold the work space of one thread, before any begins.
std::int64_t FactorPanelsOnThreads(const PanelRoutines& routines, SkylineMatrix& K,
                                   std::vector<double>& F, int threads, ColumnCounter& columns,
                                   std::int64_t maxRows = MaxPanelRows);

}  // namespace korvex
