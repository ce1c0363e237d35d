// Times the solution of detail models, each alone and side by side in vectors of every length that
// this processor has.
//
// The beams of a grillage of T girders, 20 stations and 756 equations each, driven by the same
// displacements. A solution is assembly, factorisation, substitution and stresses; the models are
// extruded before, and averaged by nobody. All ways are measured in each round, one after the
// other.
#include <cstdio>
#include <string>
#include <vector>

#include "beamshell/extrude_outline.h"
#include "beamshell/generate_beam_shells.h"
#include "beamshell/solve_beam_lanes.h"
#include "beamshell/solve_beam_shell.h"
#include "measure.h"
#include "model_of_tables.h"
#include "platform/vector_bits.h"
#include "stage_models.h"

namespace {

using korvex::BeamLanes;
using korvex::BeamShellModel;
using korvex::LaneBeam;

constexpr int Rounds = 7;
constexpr int Repeats = 25;  // of all beams, in a round: half a second

constexpr double EndDisplacements[2][6] = {{0.1, 0.2, 0.3, 1e-4, 2e-4, 3e-4},
                                           {0.2, 0.1, 0.5, 2e-4, 1e-4, 1e-4}};

void ExtrudeAll(const korvex::Model& model, std::vector<BeamShellModel>& details) {
  korvex::SectionOutline outline;
  details.resize(model.BeamElements.size());
  std::int32_t row = 0;
  for (BeamShellModel& detail : details) {
    DescribeBeam(model, row, detail, outline);
    ExtrudeOutline(outline, row++, detail);
  }
}

void SolveAlone(std::vector<BeamShellModel>& details, BeamShellModel& system) {
  for (BeamShellModel& detail : details) {
    ReuseSystem(system, detail);
    SolveBeamShell(EndDisplacements[0], EndDisplacements[1], detail);
    ReuseSystem(detail, system);
  }
}

// Returns how many had to be solved alone, which are none here.
std::size_t SolveInLanes(int bits, std::vector<BeamShellModel>& details, BeamLanes& lanes) {
  std::size_t alone = 0;
  std::vector<LaneBeam> group;
  for (BeamShellModel& detail : details) {
    group.push_back({EndDisplacements[0], EndDisplacements[1], &detail});
    if (static_cast<int>(group.size()) < korvex::CountBeamLanes(bits)) continue;
    alone += SolveBeamLanes(bits, group, lanes).size();
    group.clear();
  }
  return alone + group.size();
}

}  // namespace

int main() {
  korvex::Model model;
  korvex::bench::ReadTables(korvex::bench::MakeStageGrillage(4), model);
  std::vector<BeamShellModel> details;
  ExtrudeAll(model, details);
  std::vector<int> ways = {0};  // bits; 0: alone
  for (int bits = 128; bits <= korvex::WidestVectorBits(); bits *= 2) ways.push_back(bits);

  std::vector<std::vector<double>> seconds(ways.size());
  BeamShellModel system;
  BeamLanes lanes;
  std::size_t alone = 0;
  for (int round = 0; round < Rounds; ++round) {
    for (std::size_t way = 0; way < ways.size(); ++way) {
      seconds[way].push_back(korvex::bench::Measure([&] {
        for (int i = 0; i < Repeats; ++i) {
          if (ways[way] == 0) SolveAlone(details, system);
          if (ways[way] > 0) alone += SolveInLanes(ways[way], details, lanes);
        }
      }));
    }
  }
  const double single = korvex::bench::Median(seconds[0]);
  std::printf("%zu beams, microseconds for each; medians of %d rounds\n", details.size(), Rounds);
  for (std::size_t way = 0; way < ways.size(); ++way) {
    const double time = korvex::bench::Median(seconds[way]);
    const std::string name = ways[way] == 0 ? "alone" : std::to_string(ways[way]) + " bits";
    std::printf("%-10s %8.1f %6.2f x\n", name.c_str(),
                1e6 * time / (Repeats * static_cast<double>(details.size())), single / time);
  }
  if (alone > 0) std::printf("%zu were solved alone\n", alone);
  return alone > 0 ? 1 : 0;
}
