#include "skyline/panel/panel_routine.h"

namespace korvex {

PanelRoutines FindPanelRoutines(int /*vectorBits*/) { return {nullptr, nullptr, nullptr, nullptr}; }

LaneRoutines FindLaneRoutines(int /*vectorBits*/) { return {nullptr, nullptr}; }

SystemRoutines FindSystemRoutines(int /*vectorBits*/) { return {1, nullptr, nullptr}; }

}  // namespace korvex
