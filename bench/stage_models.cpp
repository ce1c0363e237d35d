#include "stage_models.h"

namespace korvex::bench {

namespace {

constexpr int StiffenerDistance = 10;  // rows of nodes

constexpr Material Steel{206000.0, 0.3, 7.85e-9};  // N, mm

// A grid of nodes, clamped along its first row, with a force on its last node.
ModelTables MakeGrid(int columns, int rows, double distance) {
  ModelTables tables;
  tables.Materials = {Steel};
  for (int n = 0; n < columns * rows; ++n) {
    tables.Nodes.push_back({distance * (n % columns), distance * (n / columns), 0.0});
  }
  for (int n = 0; n < columns; ++n) tables.NodalRestraints.push_back({{1, 1, 1, 1, 1, 1}, n});
  tables.NodalForces = {{columns * rows - 1, {0, 0, -1000, 0, 0, 0}}};
  return tables;
}

// Adds a beam of the first T section, its web upward.
void AddBeam(int node1, int node2, double BeamSecOz, ModelTables& tables) {
  tables.BeamNodes.insert(tables.BeamNodes.end(), {node1, node2});
  tables.BeamProperties.push_back({{0, 0, 1}, 0});
  tables.BeamSectionRefs.push_back({BeamSecTypeT, 0, BeamSecOz, false});
}

}  // namespace

ModelTables MakeStagePlate(int columns, int rows) {
  const int lines = columns + 1;  // of nodes, along the rows
  ModelTables tables = MakeGrid(lines, rows + 1, 100.25);
  tables.ShellThicknesses = {{10.0}};
  tables.TBeamSections = {{120.0, 10.0, 0.0, 0.0}};
  for (int e = 0; e < columns * rows; ++e) {
    const int n = e / columns * lines + e % columns;
    tables.Shell4Nodes.insert(tables.Shell4Nodes.end(), {n, n + 1, n + 1 + lines, n + lines});
    tables.Shell4Properties.push_back({0, 0});
    tables.Shell4SurfaceLoads.push_back({e, {-0.01, -0.01, -0.01}});
  }
  for (int b = 0; b < rows / StiffenerDistance * columns; ++b) {
    const int n = (b / columns * StiffenerDistance + StiffenerDistance / 2) * lines + b % columns;
    AddBeam(n, n + 1, 5.0, tables);
  }
  return tables;
}

ModelTables MakeStageGrillage(int side) {
  const int columns = side + 1;
  ModelTables tables = MakeGrid(columns, columns, 2150.0);
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

}  // namespace korvex::bench
