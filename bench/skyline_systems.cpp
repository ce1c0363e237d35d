// Each mesh is written as a model file's tables and assembled by the stages of a run.
#include "skyline_systems.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <utility>

#include "beamshell/extrude_outline.h"
#include "beamshell/section_outline.h"
#include "beamshell/solve_beam_shell.h"
#include "deck/write_tables.h"
#include "model/read_input_file.h"
#include "system/assemble_stiffness.h"
#include "system/profile.h"
#include "system/supports.h"

namespace korvex::bench {

namespace {

constexpr double Side = 100.0;  // of an element, mm
constexpr double Young = 206000.0, Poisson = 0.3, Thickness = 10.0;

struct Mesh {
  std::vector<std::array<double, 3>> nodes;
  std::vector<std::array<std::int32_t, 4>> squares;
};

// Adds the squares between `rows` lines of `columns` nodes.
// numbers: rows x columns, row-major, the node numbers.
void AddSquares(int columns, int rows, const std::vector<std::int32_t>& numbers, Mesh& mesh) {
  for (int row = 0; row + 1 < rows; ++row) {
    for (int column = 0; column + 1 < columns; ++column) {
      const auto* n = &numbers[static_cast<std::size_t>(row * columns + column)];
      mesh.squares.push_back({n[0], n[1], n[columns + 1], n[columns]});
    }
  }
}

// The tables of a mesh with all dofs of its first `fixed` nodes restrained.
ModelTables MakeTables(const Mesh& mesh, int fixed) {
  ModelTables tables;
  tables.Materials = {{Young, Poisson, 0.0}};
  tables.ShellThicknesses = {{Thickness}};
  for (const auto& node : mesh.nodes) tables.Nodes.push_back({node[0], node[1], node[2]});
  for (const auto& nodes : mesh.squares) {
    tables.Shell4Nodes.insert(tables.Shell4Nodes.end(), nodes.begin(), nodes.end());
    tables.Shell4Properties.push_back({0, 0});
  }
  for (int node = 0; node < fixed; ++node) {
    tables.NodalRestraints.push_back({{1, 1, 1, 1, 1, 1}, node});
  }
  return tables;
}

// The system of a mesh with its first `fixed` nodes restrained and a unit load on every dof.
SkylineSystem Assemble(const std::string& title, const Mesh& mesh, int fixed) {
  Model model;
  ReadInputText(WriteTables(MakeTables(mesh, fixed)), model);
  NumberEquations(model);
  BuildProfile(model);
  ComputeDiagonalAddresses(model.Stiffness);
  AllocateStiffness(model.Stiffness);
  AssembleStiffness(model);
  ImposeSupports(model);
  SkylineSystem system;
  system.title = title;
  system.K = std::move(model.Stiffness);
  system.F.assign(static_cast<std::size_t>(model.NEQ), 1.0);
  return system;
}

std::string SizeText(int columns, int rows) {
  return std::to_string(columns) + " x " + std::to_string(rows);
}

// Adds a flat plate on a grid of rows x columns nodes.
// numbers: rows x columns, row-major, the node numbers.
void AddPlate(int columns, int rows, const std::vector<std::int32_t>& numbers, Mesh& mesh) {
  mesh.nodes.resize(numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto place = static_cast<int>(i);
    mesh.nodes[static_cast<std::size_t>(numbers[i])] = {Side * (place % columns),
                                                        Side * (place / columns), 0.0};
  }
  AddSquares(columns, rows, numbers, mesh);
}

// A flat plate, numbered line by line.
Mesh MakePlateMesh(int columns, int rows) {
  std::vector<std::int32_t> numbers(static_cast<std::size_t>(columns * rows));
  std::iota(numbers.begin(), numbers.end(), 0);
  Mesh mesh;
  AddPlate(columns, rows, numbers, mesh);
  return mesh;
}

SkylineSystem MakePlate(int columns, int rows) {
  return Assemble("plate " + SizeText(columns, rows), MakePlateMesh(columns, rows), columns);
}

}  // namespace

SkylineSystem MakeSlopingPlate(int columns, int rows) {
  constexpr double Cosine = 0.8, Sine = 0.6;
  Mesh mesh = MakePlateMesh(columns, rows);
  for (auto& node : mesh.nodes) node = {node[0], Cosine * node[1], Sine * node[1]};
  return Assemble("sloping plate " + SizeText(columns, rows), mesh, columns);
}

namespace {

SkylineSystem MakeStiffenedPlate(int columns, int rows) {
  constexpr int Spacing = 5, WebNodes = 2;
  Mesh mesh;
  std::vector<std::int32_t> plate;
  std::vector<std::vector<std::int32_t>> webs(static_cast<std::size_t>(columns / Spacing + 1));
  const auto addNode = [&](int column, int row, int below) {
    mesh.nodes.push_back({Side * column, Side * row, -Side * below});
    return static_cast<std::int32_t>(mesh.nodes.size()) - 1;
  };
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      plate.push_back(addNode(column, row, 0));
      if (column % Spacing != 0) continue;
      auto& web = webs[static_cast<std::size_t>(column / Spacing)];
      web.push_back(plate.back());
      for (int below = 1; below <= WebNodes; ++below) web.push_back(addNode(column, row, below));
    }
  }
  AddSquares(columns, rows, plate, mesh);
  for (const auto& web : webs) {
    if (!web.empty()) AddSquares(WebNodes + 1, rows, web, mesh);
  }
  return Assemble("stiffened plate " + SizeText(columns, rows), mesh, columns);
}

SkylineSystem MakeCylinder(int columns, int rings) {
  const double angle = 2.0 * std::acos(-1.0) / columns;
  const double radius = Side / angle;
  Mesh mesh;
  std::vector<std::int32_t> numbers;
  for (int ring = 0; ring < rings; ++ring) {
    for (int column = 0; column < columns; ++column) {
      numbers.push_back(static_cast<std::int32_t>(mesh.nodes.size()));
      mesh.nodes.push_back(
          {radius * std::cos(angle * column), radius * std::sin(angle * column), Side * ring});
    }
    numbers.push_back(ring * columns);  // the ring's first node again, to close it
  }
  AddSquares(columns + 1, rings, numbers, mesh);
  return Assemble("cylinder " + SizeText(columns, rings), mesh, columns);
}

SkylineSystem MakeShuffledPlate(int columns) {
  std::vector<std::int32_t> numbers(static_cast<std::size_t>(columns * columns));
  std::iota(numbers.begin(), numbers.end(), 0);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
  Mesh mesh;
  AddPlate(columns, columns, numbers, mesh);
  return Assemble("shuffled plate " + SizeText(columns, columns), mesh, columns);
}

SkylineSystem MakeDetailModels(int copies) {
  BeamShellModel model;
  model.MeshLevel = 0;
  model.E = Young;
  model.Mu = Poisson;
  model.EndPoint1 = {0.0, 0.0, 0.0};
  model.EndPoint2 = {2150.0, 0.0, 0.0};
  model.OrientVector = {0.0, 0.0, 1.0};
  model.Tolerance = 0.215;
  SectionOutline outline;
  BuildTOutline({300.0, 10.0, 150.0, 12.0}, model.MeshLevel, outline);
  ShiftOutline(0.0, outline);
  ExtrudeOutline(outline, 0, model);
  BuildBeamShellProfile(model);
  AssembleBeamShell(model);
  constexpr double Still[6] = {}, Moved[6] = {0.0, 0.0, 1.0, 0.0, 0.0, 0.0};
  ImposeEndDisplacements(Still, Moved, model);
  SkylineSystem system;
  system.title = std::to_string(copies) + " detail models";
  system.K = std::move(model.Stiffness);
  system.F = std::move(model.LoadVector);
  system.copies = copies;
  return system;
}

}  // namespace

constexpr std::array<SkylineCase, 8> SkylineCases{{
    {"plate", [] { return MakePlate(80, 125); }},
    {"sloping", [] { return MakeSlopingPlate(80, 125); }},
    {"stiffened", [] { return MakeStiffenedPlate(60, 100); }},
    {"cylinder", [] { return MakeCylinder(60, 120); }},
    {"shuffled", [] { return MakeShuffledPlate(24); }},
    {"details", [] { return MakeDetailModels(500); }},
    {"strip", [] { return MakePlate(60, 1000); }},
    {"square", [] { return MakePlate(200, 200); }},
}};

}  // namespace korvex::bench
