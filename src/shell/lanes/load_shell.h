// Copies the numbers of a shell to a lane.
#pragma once

#include <cstddef>

#include "shell/shell_element.h"

namespace korvex {

// numbers: ShellNumbers x lanes (shell_lanes.h), from the shell's lane on.
void LoadShell(const Shell4Element& shell, std::size_t lanes, double* numbers);

}  // namespace korvex
