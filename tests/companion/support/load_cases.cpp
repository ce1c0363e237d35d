#include "support/load_cases.h"

#include "beamshell/generate_beam_shells.h"
#include "results/average_stresses.h"
#include "results/shell_stresses.h"
#include "support/detail_peaks.h"
#include "support/good_models.h"

namespace kvx::test {

using korvex::test::ModelText;

namespace {

void ScaleLoads(Dice& dice, ModelText& text) {
  const auto factor = [&dice] { return Roll(dice, -1.5, 1.5); };
  for (auto& load : text.forces) {
    const double by = factor();
    for (double& component : load.components) component *= by;
  }
  for (auto* loads : {&text.shell4Loads, &text.shell3Loads}) {
    for (auto& load : *loads) {
      const double by = factor();
      for (double& q : load.q) q *= by;
    }
  }
  for (auto& load : text.beamLoads) {
    load.q1 *= factor();
    load.q2 *= factor();
  }
}

}  // namespace

SolvedCase SolveCase(const ModelText& text) {
  SolvedCase of;
  SolveInMemory(WriteModel(text), {}, of.solved);
  korvex::RecoverShellStresses(of.solved.model);
  korvex::AverageNodeStresses(of.solved.model);
  korvex::GenerateBeamShells(of.solved.model);
  of.solved.details = TakeDetailPeaks(of.solved.model);
  ComputeReactions(of.solved, of.reactions);
  ComputeBeamForces(of.solved.model, of.beams);
  return of;
}

std::vector<SolvedCase> SolveRandomCases(std::uint32_t seed, int count) {
  Dice dice = MakeDice(seed);
  std::vector<SolvedCase> cases;
  for (int k = 0; k < count; ++k) {
    ModelText text = MakeGoodModel(seed);
    if (k > 0) ScaleLoads(dice, text);
    cases.push_back(SolveCase(text));
  }
  return cases;
}

}  // namespace kvx::test
