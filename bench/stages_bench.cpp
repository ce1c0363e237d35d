// Times every stage of a run on square plates and on a grillage, in one table each.
//
// Plates of squares, clamped along one edge, under pressure and a nodal force, with a flat-bar
// stiffener along every tenth row of nodes; and a grillage of T girders, each of which has a detail
// model of 20 stations. The stages are those of the program, called in its order in the current
// folder, which receives the model file and all results.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>
#include <vector>

#include "beamshell/average_stress_file.h"
#include "beamshell/generate_beam_shells.h"
#include "dxf/line_drawing.h"
#include "model/read_input_file.h"
#include "platform/vector_bits.h"
#include "results/average_stresses.h"
#include "results/node_displacements.h"
#include "results/shell_stresses.h"
#include "results/stress_files.h"
#include "system/assemble_system.h"
#include "system/factor_skyline.h"
#include "system/load_vector.h"
#include "system/profile.h"
#include "system/substitute_back.h"
#include "system/supports.h"

namespace {

using korvex::Model;

constexpr int StiffenerDistance = 10;  // rows of nodes

// Writes the model file of a plate of side x side squares of 100 mm.
void WritePlate(int side) {
  std::ofstream file("fem_solving.txt");
  const int columns = side + 1;
  file << "### Toln_Korvex release=3.0 ###\n"
          "Number of materials:NMT=1\n#0:\nE=206000\nMu=0.3\nDensity=7.85e-9\n"
          "Number of shell thicknesses:NTK=1\n#0:\nTK=10\n"
          "Number of T_beam sections:NTBS=1\nbar\nHw=120\nTw=10\nBf=0\nTf=0\n"
          "Number of L_beam sections:NLBS=0\nNumber of C_beam sections:NCBS=0\n"
       << "Number of nodal points:NPOIN=" << columns * columns << '\n';
  for (int n = 0; n < columns * columns; ++n) {
    file << n << ':' << 100.25 * (n % columns) << ',' << 100.25 * (n / columns) << ",0\n";
  }
  file << "Number of four-nodes shell elements:NELEM_S_4ND=" << side * side << '\n';
  for (int e = 0; e < side * side; ++e) {
    const int n = e / side * columns + e % side;
    file << e << ':' << n << ',' << n + 1 << ',' << n + 1 + columns << ',' << n + columns
         << "[0,0]\n";
  }
  file << "Number of three-nodes shell elements:NELEM_S_3ND=0\n";
  const int rows = side / StiffenerDistance;
  file << "Number of beam elements:NELEM_B=" << rows * side << '\n';
  for (int b = 0; b < rows * side; ++b) {
    const int n = (b / side * StiffenerDistance + StiffenerDistance / 2) * columns + b % side;
    file << b << ':' << n << ',' << n + 1
         << "<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=5,BeamSecMirrored=0]\n";
  }
  file << "Number of restricted nodal points:NRN=" << columns << '\n';
  for (int n = 0; n < columns; ++n) file << n << ": 1 1 1 1 1 1\n";
  file << "Number of forces:NFOR=1\n"
       << columns * columns - 1 << "<0,0,-1000,0,0,0>\n"
       << "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=" << side * side
       << '\n';
  for (int e = 0; e < side * side; ++e) file << e << ":-0.01,-0.01,-0.01\n";
  file << "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0\n"
          "Number of distributed loads on beam elements:NDL_B=0\n";
}

// Writes the model file of a square grillage with `side` fields of 2150 mm a side.
void WriteGrillage(int side) {
  std::ofstream file("fem_solving.txt");
  const int columns = side + 1;
  file << "### Toln_Korvex release=3.0 ###\n"
          "Number of materials:NMT=1\n#0:\nE=206000\nMu=0.3\nDensity=7.85e-9\n"
          "Number of shell thicknesses:NTK=0\n"
          "Number of T_beam sections:NTBS=1\ngirder\nHw=300\nTw=10\nBf=150\nTf=12\n"
          "Number of L_beam sections:NLBS=0\nNumber of C_beam sections:NCBS=0\n"
       << "Number of nodal points:NPOIN=" << columns * columns << '\n';
  for (int n = 0; n < columns * columns; ++n) {
    file << n << ':' << 2150 * (n % columns) << ',' << 2150 * (n / columns) << ",0\n";
  }
  file << "Number of four-nodes shell elements:NELEM_S_4ND=0\n"
          "Number of three-nodes shell elements:NELEM_S_3ND=0\n"
          "Number of beam elements:NELEM_B="
       << 2 * side * columns << '\n';
  const char* section = "<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]\n";
  int b = 0;
  for (int line = 0; line < columns; ++line) {
    for (int i = 0; i < side; ++i) {
      const int along = line * columns + i, across = i * columns + line;
      file << b++ << ':' << along << ',' << along + 1 << section;
      file << b++ << ':' << across << ',' << across + columns << section;
    }
  }
  file << "Number of restricted nodal points:NRN=" << columns << '\n';
  for (int n = 0; n < columns; ++n) file << n << ": 1 1 1 1 1 1\n";
  file << "Number of forces:NFOR=1\n"
       << columns * columns - 1 << "<0,0,-1000,0,0,0>\n"
       << "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=0\n"
          "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0\n"
          "Number of distributed loads on beam elements:NDL_B=0\n";
}

// Runs a stage and prints its time.
void Time(const char* stage, const std::function<void()>& work, double& total) {
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  total += time.count();
  std::printf("%-28s %9.4f\n", stage, time.count());
  std::fflush(stdout);
}

// Runs all stages on the model file in the current folder.
void RunStages() {
  using namespace korvex;
  Model model;
  std::ostringstream log;
  double total = 0.0;
  Time(
      "read", [&] { ReadInputFile("fem_solving.txt", model); }, total);
  Time(
      "profile",
      [&] {
        model.NEQ = model.NPOIN * DofsPerNode;
        BuildProfile(model);
        ComputeDiagonalAddresses(model.Stiffness);
      },
      total);
  Time(
      "structure.dxf", [&] { WriteStructureDrawing("structure.dxf", model); }, total);
  Time(
      "allocate", [&] { AllocateValues(model.Stiffness); }, total);
  Time(
      "assemble", [&] { AssembleStiffness(model); }, total);
  Time(
      "loads and supports",
      [&] {
        AssembleLoadVector(model);
        ImposeSupports(model);
      },
      total);
  Time(
      "factor",
      [&] {
        ColumnCounter columns = {SolverProgress::Silent};
        FactorSkyline(WidestVectorBits(), model.Stiffness, model.LoadVector, columns);
      },
      total);
  Time(
      "substitute", [&] { SubstituteBack(model.Stiffness, model.LoadVector, model.Displacements); },
      total);
  Time(
      "Node_Dis.txt", [&] { WriteNodeDisplacements(model); }, total);
  Time(
      "deformation.dxf", [&] { WriteDeformationDrawing("deformation.dxf", model); }, total);
  Time(
      "stresses", [&] { RecoverShellStresses(model); }, total);
  Time(
      "element stress file", [&] { WriteElementNodeStresses(model); }, total);
  Time(
      "averaging", [&] { AverageNodeStresses(model); }, total);
  Time(
      "average stress file", [&] { WriteAverageNodeStresses(model); }, total);
  Time(
      "detail models", [&] { GenerateBeamShells(model); }, total);
  Time(
      "Korvex_AverageStrs.txt", [&] { WriteAverageStressFile("Korvex_AverageStrs.txt", model); },
      total);
  Time(
      "release", [&] { ReleaseModel(model); }, total);
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
      WritePlate(side);
    } else {
      std::printf("\ngrillage of %d beams, seconds\n", 2 * side * (side - 1));
      WriteGrillage(-side);
    }
    RunStages();
  }
  return 0;
}
