// The routines of a vector length. A build for processors without vector routines links
// panel_routine_none.cpp, which has none.
#pragma once

#include "skyline/panel/lanes.h"
#include "skyline/panel/panel.h"
#include "skyline/panel/systems.h"

namespace korvex {

// Return the routines for vectorBits = 128, 256 or 512; null pointers for other lengths, and where
// the program has no such routines.
PanelRoutines FindPanelRoutines(int vectorBits);
LaneRoutines FindLaneRoutines(int vectorBits);
SystemRoutines FindSystemRoutines(int vectorBits);

}  // namespace korvex
