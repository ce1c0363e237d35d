// What the commands say: results on standard output, complaints on standard error.
#pragma once

#include <string>

#include "commands/exit_status.h"
#include "finding/findings_text.h"

namespace kvx {

enum class ColorChoice { Auto, Always, Never };

// "kvx", or "kvx-mpi".
std::string ProgramName();

// The width and colours for standard output. Auto: colours on a terminal, unless the environment
// variable NO_COLOR is set and not empty (no-color.org).
TextStyle ChooseStyle(ColorChoice choice);

// Writes `text` to standard output and flushes it. Returns ExitFine, or ExitOutputFailed with a
// complaint where it was not written whole.
ExitStatus WriteOutput(const std::string& text);

// Writes "who: text" as a line to standard error. who: "kvx" or "kvx run"; kvx-mpi says its own
// name instead. text: any bytes.
void Complain(const std::string& who, const std::string& text);

}  // namespace kvx
