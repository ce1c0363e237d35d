// The command line of kvx: which command was meant, with which options.
#pragma once

#include <string>
#include <vector>

#include "commands/exit_status.h"

namespace kvx {

// arguments: those behind the program's name, UTF-8. Runs the command and returns the exit status.
ExitStatus RunCommandLine(const std::vector<std::string>& arguments);

}  // namespace kvx
