#include "commands/recover_stresses.h"

#include "beamshell/generate_beam_shells.h"
#include "commands/core_count.h"
#include "commands/progress.h"
#include "results/average_stresses.h"
#include "results/shell_stresses.h"

namespace kvx {

namespace {

void MakeDetails(DetailWish wish, const DetailChoice& choice, SolvedModel& solved) {
  Progress progress;
  const auto share = [&](double done) { ShowDetailShare(done, "", progress); };
  if (wish == DetailWish::Peaks) {
    FindDetailPeaks(solved.model, {CountCores(), 0, share}, choice, solved.details);
    return;
  }
  solved.details = {};
  CheckSectionTypes(solved.model.Tables);
  korvex::GenerateBeamShells(solved.model, share, CountCores());
  const std::vector<korvex::BeamShellModel>& models = solved.model.BeamShellModels;
  AppendDetailPeaks({0, models.data(), models.size(), true}, choice, solved.details);
}

}  // namespace

void RecoverStresses(DetailWish wish, const DetailChoice& choice, SolvedModel& solved) {
  StopIfInterrupted();
  korvex::RecoverShellStresses(solved.model, CountCores());
  StopIfInterrupted();
  korvex::AverageNodeStresses(solved.model, CountCores());
  StopIfInterrupted();
  if (wish != DetailWish::None) MakeDetails(wish, choice, solved);
}

}  // namespace kvx
