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

namespace {

using korvex::ModelTables;

constexpr int StiffenerDistance = 10;  // rows of nodes

constexpr korvex::Material Steel{206000.0, 0.3, 7.85e-9};  // N, mm

// A square grid of nodes, clamped along its first row, with a force on its last node.
ModelTables MakeGrid(int columns, double distance) {
  ModelTables tables;
  tables.Materials = {Steel};
  for (int n = 0; n < columns * columns; ++n) {
    tables.Nodes.push_back({distance * (n % columns), distance * (n / columns), 0.0});
  }
  for (int n = 0; n < columns; ++n) tables.NodalRestraints.push_back({{1, 1, 1, 1, 1, 1}, n});
  tables.NodalForces = {{columns * columns - 1, {0, 0, -1000, 0, 0, 0}}};
  return tables;
}

// Adds a beam of the first T section, its web upward.
void AddBeam(int node1, int node2, double BeamSecOz, ModelTables& tables) {
  tables.BeamNodes.insert(tables.BeamNodes.end(), {node1, node2});
  tables.BeamProperties.push_back({{0, 0, 1}, 0});
  tables.BeamSectionRefs.push_back({korvex::BeamSecTypeT, 0, BeamSecOz, false});
}

// A plate of side x side squares of 100.25 mm.
ModelTables MakePlate(int side) {
  const int columns = side + 1;
  ModelTables tables = MakeGrid(columns, 100.25);
  tables.ShellThicknesses = {{10.0}};
  tables.TBeamSections = {{120.0, 10.0, 0.0, 0.0}};
  for (int e = 0; e < side * side; ++e) {
    const int n = e / side * columns + e % side;
    tables.Shell4Nodes.insert(tables.Shell4Nodes.end(), {n, n + 1, n + 1 + columns, n + columns});
    tables.Shell4Properties.push_back({0, 0});
    tables.Shell4SurfaceLoads.push_back({e, {-0.01, -0.01, -0.01}});
  }
  for (int b = 0; b < side / StiffenerDistance * side; ++b) {
    const int n = (b / side * StiffenerDistance + StiffenerDistance / 2) * columns + b % side;
    AddBeam(n, n + 1, 5.0, tables);
  }
  return tables;
}

// A square grillage with `side` fields of 2150 mm a side.
ModelTables MakeGrillage(int side) {
  const int columns = side + 1;
  ModelTables tables = MakeGrid(columns, 2150.0);
  tables.TBeamSections = {{300.0, 10.0, 150.0, 12.0}};
  for (int line = 0; line < columns; ++line) {
    for (int i = 0; i < side; ++i) {
      const int along = line * columns + i, across = i * columns + line;
      AddBeam(along, along + 1, 0.0, tables);
      AddBeam(across, across + columns, 0.0, tables);
    }
  }
  return tables;
}

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
      TimeStages(MakePlate(side));
    } else {
      std::printf("\ngrillage of %d beams, seconds\n", 2 * side * (side - 1));
      TimeStages(MakeGrillage(-side));
    }
  }
  return 0;
}
