// The panel routine (skyline_panel.h) for a vector length.
#pragma once

#include "skyline/panel/panel.h"

namespace korvex {

// vectorBits: 128, 256 or 512. Null where the program has none of this length.
PanelRoutine FindPanelRoutine(int vectorBits);

}  // namespace korvex
