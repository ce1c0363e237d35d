// Times every stage of a run on square plates and on a grillage, in one table each.
//
// Plates of squares, clamped along one edge, under pressure and a nodal force, with a flat-bar
// stiffener along every tenth row of nodes; and a grillage of T girders, each of which has a detail
// model of 20 stations. The stages are the program's own list, worked through in the current
// folder, which receives the model file and all results.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <vector>

#include "deck/write_tables.h"
#include "run/file_names.h"
#include "run/stages.h"
#include "stage_models.h"

namespace {

using korvex::ModelTables;

// Works through all stages on the model and prints the time of each.
void TimeStages(const ModelTables& tables) {
  std::ofstream(korvex::ModelFileName, std::ios::binary) << WriteTables(tables);
  korvex::Job job;
  double total = 0.0;
  korvex::ForAllStages([&](const korvex::Stage& stage) {
    const auto start = std::chrono::steady_clock::now();
    stage.work(job);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    total += time.count();
    std::printf("%-28s %9.4f\n", stage.name, time.count());
    std::fflush(stdout);
  });
  std::printf("%-28s %9.4f\n", "total", total);
}

}  // namespace

// Arguments: the sides of the plates in elements, negative ones those of grillages in fields;
// without any, plates of 32, 100, 141 and 200 and a grillage of 99, which has 19,800 beams.
int main(int count, char** arguments) {
  std::vector<int> sides;
  for (int i = 1; i < count; ++i) sides.push_back(std::atoi(arguments[i]));
  if (sides.empty()) sides = {32, 100, 141, 200, -99};
  for (const int side : sides) {
    if (side > 0) {
      std::printf("\nplate of %d shells, seconds\n", side * side);
      TimeStages(korvex::bench::MakeStagePlate(side, side));
    } else {
      std::printf("\ngrillage of %d beams, seconds\n", 2 * side * (side - 1));
      TimeStages(korvex::bench::MakeStageGrillage(-side));
    }
  }
  return 0;
}
