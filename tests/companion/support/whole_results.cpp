#include "support/whole_results.h"

#include "beamshell/generate_beam_shells.h"
#include "results/average_stresses.h"
#include "results/shell_stresses.h"
#include "support/detail_peaks.h"
#include "support/good_models.h"
#include "support/temp_folder.h"

namespace kvx::test {

SolvedModel SolveWhole(const std::string& modelText) {
  SolvedModel solved;
  SolveInMemory(modelText, {}, solved);
  korvex::RecoverShellStresses(solved.model);
  korvex::AverageNodeStresses(solved.model);
  korvex::GenerateBeamShells(solved.model);
  solved.details = TakeDetailPeaks(solved.model);
  return solved;
}

namespace {

std::vector<NamedModel> SolveModels() {
  std::vector<NamedModel> models;
  for (const char* name : {"lattice-tower", "stiffened-panel", "water-trough"}) {
    const std::string file = std::string(KORVEX_EXAMPLES "/") + name + "/fem_solving.txt";
    models.push_back({name, SolveWhole(korvex::test::ReadFile(file))});
  }
  constexpr std::uint32_t Seeds = 6;
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    models.push_back({"seed " + std::to_string(seed), SolveWhole(MakeGoodModel(seed))});
  }
  return models;
}

}  // namespace

const std::vector<NamedModel>& ListSolvedModels() {
  static const std::vector<NamedModel> models = SolveModels();
  return models;
}

}  // namespace kvx::test
