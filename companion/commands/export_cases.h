// The files that `kvx export` makes of a case file: those of each case and combination, an envelope
// each, and a collection of all cases.
#pragma once

#include <string>

#include "commands/commands.h"

namespace kvx {

// file: the case file, as the user wrote it. Reads the results that `kvx cases` has left. Returns
// the gravest status of all cases, after complaints. The current folder stays as it is. Throws
// Interrupted.
ExitStatus ExportCases(const ExportCommand& command, const std::string& file);

}  // namespace kvx
