// Copies the numbers of a shell to a lane: twelve coordinates, the nine entries of its frame, E, Mu
// and TK, as the routines of shell_lanes.h read them.
#pragma once

#include <cstddef>

#include "shell/shell_element.h"

namespace korvex {

// numbers: ShellNumbers x lanes (shell_lanes.h), from the shell's lane on.
void LoadShell(const Shell4Element& shell, std::size_t lanes, double* numbers);

}  // namespace korvex
