// Long output in blocks: a table of a large model is written while it is made, and never stands in
// memory as a whole.
#pragma once

#include <ostream>
#include <string>

#include "commands/exit_status.h"

namespace kvx {

struct OutputBlocks {
  std::ostream* stream = nullptr;  // where it goes; null: standard output
  std::string waiting;             // not yet written
  ExitStatus status = ExitFine;    // of what was written to standard output
};

// Adds the text, and writes what is waiting when it is a block. Does nothing once writing has
// failed. Throws Interrupted after an interrupt.
void AddOutput(const std::string& text, OutputBlocks& blocks);

// Writes the rest. Returns ExitFine, or ExitOutputFailed after a complaint.
ExitStatus EndOutput(OutputBlocks& blocks);

}  // namespace kvx
