// No panel routines: see panel_routine.h.
#include "system/panel_routine.h"

namespace korvex {

PanelRoutine FindPanelRoutine(int /*vectorBits*/) { return nullptr; }

}  // namespace korvex
