// Which panel routine serves a vector length. A build for processors without vector routines links
// panel_routine_none.cpp, which has none.
#pragma once

#include "skyline/panel/panel.h"

namespace korvex {

// Returns the panel routine for vectorBits = 128, 256 or 512; null for other lengths, and where the
// program has no panel routines.
PanelRoutine FindPanelRoutine(int vectorBits);

}  // namespace korvex
