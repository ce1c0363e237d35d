// No panel routines: see panel_routine.h.
#include "skyline/panel/panel_routine.h"

namespace korvex {

PanelRoutine FindPanelRoutine(int /*vectorBits*/) { return nullptr; }

}  // namespace korvex
