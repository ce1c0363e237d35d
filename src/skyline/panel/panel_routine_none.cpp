#include "skyline/panel/panel_routine.h"

namespace korvex {

PanelRoutine FindPanelRoutine(int /*vectorBits*/) { return nullptr; }

}  // namespace korvex
