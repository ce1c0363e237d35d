// `kvx run` beside CalculiX on the same square plates: simply supported, under pressure, of
// four-node shells. Both are programs of their own, started in turn; times, memory and the
// deflection of the middle stand side by side.
//
//   calculix_bench KVX FOLDER [ROUNDS [THREADS [SIDE ...]]]
//
// KVX: the program. FOLDER: for models and results; it is made. ROUNDS: 3. THREADS: of each, all
// cores without. SIDE: shells along an edge, 200 and 400 without.
//
// `ccx` is looked for in PATH (Debian: calculix-ccx). Its S4 is a solid element with two layers of
// nodes, so it has the displacements of 6 dofs a node, too, and the stresses of both faces. Each
// writes these and no more: kvx Node_Dis.txt and two files of stresses (and two drawings, which
// cannot be left out), ccx a file of results as text. POSIX systems.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "base/gigabyte.h"
#include "child_process.h"
#include "deck/write_tables.h"
#include "measure.h"
#include "run/file_names.h"

namespace {

namespace fs = std::filesystem;
using korvex::ModelTables;
using korvex::bench::ProcessUse;

// N, mm. The elements stay as large, so that the plate becomes slenderer with their number and the
// pressure smaller: the middle goes down by 10 mm about.
constexpr double Edge = 100.0, Thickness = 10.0, Modulus = 206000.0, Poisson = 0.3;

struct Plate {
  int side = 0;  // elements
  double pressure = 0.0;
};

Plate MakePlate(int side) {
  constexpr double Deflection = 10.0;
  // w = 0.00406 p a^4 / D (Timoshenko & Woinowsky-Krieger 1959, table 8)
  const double length = Edge * side;
  const double rigidity =
      Modulus * Thickness * Thickness * Thickness / (12.0 * (1.0 - Poisson * Poisson));
  return {side, Deflection * rigidity / (0.00406 * length * length * length * length)};
}

int LineLength(const Plate& plate) { return plate.side + 1; }
int MiddleNode(const Plate& plate) { return plate.side / 2 * LineLength(plate) + plate.side / 2; }

bool IsOnEdge(const Plate& plate, int node) {
  const int i = node % LineLength(plate), j = node / LineLength(plate);
  return i == 0 || j == 0 || i == plate.side || j == plate.side;
}

void WriteModel(const Plate& plate, const fs::path& name) {
  const int line = LineLength(plate);
  ModelTables tables;
  tables.Materials = {{Modulus, Poisson, 7.85e-9}};
  tables.ShellThicknesses = {{Thickness}};
  for (int n = 0; n < line * line; ++n) {
    tables.Nodes.push_back({Edge * (n % line), Edge * (n / line), 0.0});
    if (IsOnEdge(plate, n)) tables.NodalRestraints.push_back({{1, 1, 1, 0, 0, 0}, n});
  }
  for (int e = 0; e < plate.side * plate.side; ++e) {
    const int n = e / plate.side * line + e % plate.side;
    tables.Shell4Nodes.insert(tables.Shell4Nodes.end(), {n, n + 1, n + 1 + line, n + line});
    tables.Shell4Properties.push_back({0, 0});
    tables.Shell4SurfaceLoads.push_back({e, {-plate.pressure, -plate.pressure, -plate.pressure}});
  }
  std::ofstream(name, std::ios::binary) << korvex::WriteTables(tables);
}

// Numbers begin with 1. The pressure acts against the normal, as the forces of the model.
void WriteDeck(const Plate& plate, const fs::path& name) {
  std::FILE* const file = std::fopen(name.c_str(), "w");
  if (file == nullptr) std::exit(EXIT_FAILURE);
  const int line = LineLength(plate);
  std::fprintf(file, "*NODE, NSET=ALL\n");
  for (int n = 0; n < line * line; ++n) {
    std::fprintf(file, "%d, %.16g, %.16g, 0.\n", n + 1, Edge * (n % line), Edge * (n / line));
  }
  std::fprintf(file, "*ELEMENT, TYPE=S4, ELSET=PLATE\n");
  for (int e = 0; e < plate.side * plate.side; ++e) {
    const int n = e / plate.side * line + e % plate.side + 1;
    std::fprintf(file, "%d, %d, %d, %d, %d\n", e + 1, n, n + 1, n + 1 + line, n + line);
  }
  std::fprintf(file, "*NSET, NSET=EDGE\n");
  for (int n = 0; n < line * line; ++n) {
    if (IsOnEdge(plate, n)) std::fprintf(file, "%d,\n", n + 1);
  }
  std::fprintf(file,
               "*NSET, NSET=MIDDLE\n%d,\n*MATERIAL, NAME=STEEL\n*ELASTIC\n%.16g, %.16g\n"
               "*SHELL SECTION, ELSET=PLATE, MATERIAL=STEEL\n%.16g\n"
               "*BOUNDARY\nEDGE, 1, 3\n*STEP\n*STATIC\n*DLOAD\nPLATE, P, %.10g\n"
               "*NODE FILE\nU\n*EL FILE\nS\n*NODE PRINT, NSET=MIDDLE\nU\n*END STEP\n",
               MiddleNode(plate) + 1, Modulus, Poisson, Thickness, -plate.pressure);
  std::fclose(file);
}

// The third displacement in the line that begins with the node's number; both programs write node,
// ux, uy, uz. 0: there is none.
double ReadDeflection(const fs::path& name, int node) {
  std::ifstream file(name);
  for (std::string text; std::getline(file, text);) {
    std::replace(text.begin(), text.end(), ':', ' ');
    std::istringstream line(text);
    double number = -1.0, x = 0.0, y = 0.0, z = 0.0;
    if (line >> number >> x >> y >> z && number == static_cast<double>(node)) return z;
  }
  return 0.0;
}

// Seconds of the solution alone, as the program tells them: order, matrix, factor, displacements
// and their accuracy.
double ReadSolutionSeconds(const fs::path& folder, std::string& engine) {
  std::ifstream file(folder / "solution.json");
  const nlohmann::json json = nlohmann::json::parse(file, nullptr, false);
  if (!json.is_object()) return 0.0;
  engine = json.value("engine", "");
  double seconds = 0.0;
  for (const char* key : {"order_seconds", "factor_seconds", "solve_seconds"}) {
    if (json.contains(key) && json[key].is_number()) seconds += json[key].get<double>();
  }
  return seconds;
}

// Of one program, by rounds.
struct Rounds {
  std::vector<double> clock, processor, bytes, solution;
  double deflection = 0.0;
};

void Take(const char* name, const ProcessUse& use, Rounds& rounds) {
  if (!use.isFine) {
    std::printf("%s failed with status %d\n", name, use.status);
    std::exit(EXIT_FAILURE);
  }
  rounds.clock.push_back(use.clock);
  rounds.processor.push_back(use.processor);
  rounds.bytes.push_back(use.bytes / korvex::BytesPerGigabyte);
}

void PrintRow(const std::string& name, const Rounds& rounds) {
  using korvex::bench::Median;
  std::printf("| %s | %.2f | %.2f | %.3f | ", name.c_str(), Median(rounds.clock),
              Median(rounds.processor), Median(rounds.bytes));
  if (rounds.solution.empty()) {
    std::printf("|");
  } else {
    std::printf("%.2f |", Median(rounds.solution));
  }
  std::printf(" %.5f |\n", rounds.deflection);
}

std::vector<double> Divide(const std::vector<double>& a, const std::vector<double>& b) {
  std::vector<double> ratios;
  for (std::size_t k = 0; k < a.size(); ++k) ratios.push_back(a[k] / b[k]);
  return ratios;
}

void Compare(const Plate& plate, int rounds, const std::string& kvx, const std::string& threads,
             const fs::path& folder) {
  const fs::path model = folder / "kvx", deck = folder / "ccx";
  fs::create_directories(model);
  fs::create_directories(deck);
  WriteModel(plate, model / korvex::ModelFileName);
  WriteDeck(plate, deck / "plate.inp");
  Rounds ours, theirs;
  std::string engine;
  for (int round = 0; round < rounds; ++round) {
    Take("kvx",
         korvex::bench::RunProcess({kvx, "run", model.string(), "--threads", threads},
                                   (folder / "kvx.txt").string()),
         ours);
    ours.solution.push_back(ReadSolutionSeconds(model, engine));
    Take("ccx",
         korvex::bench::RunProcess({"ccx", (deck / "plate").string()},
                                   (folder / "ccx.txt").string()),
         theirs);
  }
  ours.deflection = ReadDeflection(model / korvex::DisplacementFileName, MiddleNode(plate));
  theirs.deflection = ReadDeflection(deck / "plate.dat", MiddleNode(plate) + 1);
  std::printf("\nplate of %d x %d = %d shells, %s threads, medians of %d rounds\n\n", plate.side,
              plate.side, plate.side * plate.side, threads.c_str(), rounds);
  std::printf("| | clock, s | processor, s | memory, GB | solution alone, s | middle, mm |\n");
  std::printf("|---|---|---|---|---|---|\n");
  PrintRow("kvx run (" + engine + ")", ours);
  PrintRow("CalculiX", theirs);
  using korvex::bench::Median;
  std::printf("| ratio | %.2f | %.2f | %.2f | | %.5f |\n", Median(Divide(theirs.clock, ours.clock)),
              Median(Divide(theirs.processor, ours.processor)),
              Median(Divide(theirs.bytes, ours.bytes)), theirs.deflection / ours.deflection);
  std::fflush(stdout);
  fs::remove_all(model);
  fs::remove_all(deck);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: calculix_bench KVX FOLDER [ROUNDS [THREADS [SIDE ...]]]\n", stderr);
    return EXIT_FAILURE;
  }
  const std::string kvx = fs::absolute(argv[1]).string();
  const fs::path folder = fs::absolute(argv[2]);
  const int rounds = argc > 3 ? std::max(std::atoi(argv[3]), 1) : 3;
  const std::string threads =
      argc > 4 ? argv[4] : std::to_string(std::max(std::thread::hardware_concurrency(), 1U));
  // Of ccx: the stiffness, the solver, the stresses.
  for (const char* name : {"OMP_NUM_THREADS", "CCX_NPROC_EQUATION_SOLVER", "CCX_NPROC_STIFFNESS",
                           "CCX_NPROC_RESULTS", "NUMBER_OF_PROCESSORS"}) {
    setenv(name, threads.c_str(), 1);
  }
  std::vector<int> sides{200, 400};
  if (argc > 5) sides.clear();
  for (int k = 5; k < argc; ++k) sides.push_back(std::atoi(argv[k]));
  for (const int side : sides) Compare(MakePlate(side), rounds, kvx, threads, folder);
  return EXIT_SUCCESS;
}
