#include "commands/recover_stresses.h"

#include <string>

#include "beamshell/generate_beam_shells.h"
#include "commands/core_count.h"
#include "commands/progress.h"
#include "report/stop.h"
#include "results/average_stresses.h"
#include "results/shell_stresses.h"

namespace kvx {

namespace {

// The solver's own stop does not name the beam.
void CheckSectionTypes(const korvex::ModelTables& tables) {
  for (std::size_t b = 0; b < tables.BeamSectionRefs.size(); ++b) {
    const std::int32_t type = tables.BeamSectionRefs[b].BeamSecType;
    if (korvex::HasSectionTable(type)) continue;
    throw korvex::Stop{korvex::StopKind::Notice, "Beam " + std::to_string(b) +
                                                     " has BeamSecType=" + std::to_string(type) +
                                                     ", which is no kind of section."};
  }
}

void MakeDetailModels(korvex::Model& model) {
  Progress progress;
  korvex::GenerateBeamShells(
      model, [&](double share) { ShowDetailShare(share, "", progress); }, CountCores());
}

}  // namespace

void RecoverStresses(bool withBeams, SolvedModel& solved) {
  StopIfInterrupted();
  korvex::RecoverShellStresses(solved.model, CountCores());
  StopIfInterrupted();
  korvex::AverageNodeStresses(solved.model, CountCores());
  StopIfInterrupted();
  if (!withBeams) return;
  CheckSectionTypes(solved.model.Tables);
  MakeDetailModels(solved.model);
}

}  // namespace kvx
