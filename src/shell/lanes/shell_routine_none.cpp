#include "shell/lanes/shell_lanes.h"

namespace korvex {

ShellRoutines FindShellRoutines(int /*vectorBits*/) { return {1, nullptr, nullptr, nullptr}; }

}  // namespace korvex
