// The parts of `kvx forces`: what was chosen, and the output of beams and of shells.
#pragma once

#include "commands/beam_tables.h"
#include "commands/commands.h"
#include "commands/output_blocks.h"
#include "commands/shell_tables.h"
#include "tables/model_origin.h"

namespace kvx {

struct ForcesChoice {
  std::vector<std::int32_t> beams;  // rows, ascending
  std::vector<ElementRef> shells;   // of both kinds, four-node ones first
  bool hasBeamList = false;         // beams were named: details of each
  bool hasShellList = false;        // shells were named: each is shown as text, too
  ModelOrigin origin;               // of the model, where it was imported
};

// All beams of the choice as `form`. JSON: the array alone.
void AddBeamOutput(const korvex::Model& model, const ForcesCommand& command,
                   const ForcesChoice& choice, OutputBlocks& blocks);

// All shells of the choice; JSON: the array of those of this kind alone.
void AddShellText(const korvex::Model& model, const ForcesCommand& command,
                  const ForcesChoice& choice, OutputBlocks& blocks);
void AddShellCsv(const korvex::Model& model, const ForcesCommand& command,
                 const ForcesChoice& choice, OutputBlocks& blocks);
void AddShellJson(const korvex::Model& model, const ForcesCommand& command,
                  const ForcesChoice& choice, ElementKind kind, OutputBlocks& blocks);

}  // namespace kvx
