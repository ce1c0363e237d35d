// Times 20 load cases of one structure against one: everything but the files.
//
//   flat     a square plate in the plane of x and y, clamped along one edge: two systems
//   tilted   the same plate, inclined: one system
//
// Each round solves one case and then 20, so that a machine that others share slows both alike. As
// in `kvx run`, the model of each case is made from its own text and compared with the first, and
// each case gets stresses and averages. Times are processor times.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "audit/assemble_watched.h"
#include "deck/write_tables.h"
#include "engine/same_stiffness.h"
#include "measure.h"
#include "model/read_input_file.h"
#include "results/average_stresses.h"
#include "results/shell_stresses.h"
#include "skyline/solve_loads.h"
#include "system/load_vector.h"
#include "system/profile.h"
#include "system/supports.h"

namespace {

using korvex::ModelTables;

// A plate of side x side squares of 100.25 mm, under pressure.
ModelTables MakePlate(int side, bool isTilted) {
  constexpr double Size = 100.25;
  const int columns = side + 1;
  ModelTables tables;
  tables.Materials = {{206000.0, 0.3, 7.85e-9}};  // N, mm
  tables.ShellThicknesses = {{10.0}};
  for (int n = 0; n < columns * columns; ++n) {
    const double x = Size * (n % columns), y = Size * (n / columns);
    if (isTilted) {
      tables.Nodes.push_back({0.8 * x, 0.36 * x + 0.8 * y, 0.48 * x - 0.6 * y});
    } else {
      tables.Nodes.push_back({x, y, 0.0});
    }
  }
  for (int n = 0; n < columns; ++n) tables.NodalRestraints.push_back({{1, 1, 1, 1, 1, 1}, n});
  for (int e = 0; e < side * side; ++e) {
    const int n = e / side * columns + e % side;
    tables.Shell4Nodes.insert(tables.Shell4Nodes.end(), {n, n + 1, n + 1 + columns, n + columns});
    tables.Shell4Properties.push_back({0, 0});
    tables.Shell4SurfaceLoads.push_back({e, {-0.01, -0.01, -0.01}});
  }
  return tables;
}

// The stages that are timed.
enum Stage { Read, Load, Form, Solve, Stresses, Averages, StageCount };
constexpr std::array<const char*, StageCount> StageNames{"read the files", "loads",    "form",
                                                         "solve",          "stresses", "averages"};
using Seconds = std::array<double, StageCount>;

// The cases of one structure. Each has a nodal force of its own.
struct Cases {
  korvex::Model model;  // of the first
  std::vector<std::vector<double>> loads, displacements;
};

// Reads a model for each case and compares it with the first.
void ReadCases(const std::string& text, std::size_t count, Cases& cases, Seconds& seconds) {
  using korvex::bench::Measure;
  korvex::Model other;
  for (std::size_t k = 0; k < count; ++k) {
    korvex::Model& model = k == 0 ? cases.model : other;
    seconds[Read] += Measure([&] {
      model = {};
      korvex::ReadInputText(text, model);
      korvex::NumberEquations(model);
      if (k > 0 && !kvx::HaveSameStiffness(cases.model, model)) std::abort();
    });
    korvex::NodalForce force;
    force.node = static_cast<std::int32_t>(100 * k);
    force.components[2] = -1000.0;
    model.Tables.NodalForces.push_back(force);
    seconds[Load] += Measure([&] {
      korvex::AssembleLoadVector(model);
      cases.loads.push_back(model.LoadVector);
    });
  }
  cases.displacements.assign(count, std::vector<double>(cases.loads[0].size()));
}

// As kvx::SolveTogether, in two stages.
Seconds SolveCases(const std::string& text, std::size_t count) {
  using korvex::bench::Measure;
  Seconds seconds{};
  Cases cases;
  korvex::Model& model = cases.model;
  korvex::WorkShare work;
  ReadCases(text, count, cases, seconds);
  seconds[Form] = Measure([&] {
    kvx::AssembleWatched(model, count, work);
    korvex::ImposeSupports(model);
  });
  seconds[Solve] = Measure([&] {
    korvex::SolveLoads(model.Stiffness, cases.loads, cases.displacements, work);
    model.Stiffness = {};
  });
  for (std::vector<double>& u : cases.displacements) {
    model.Displacements.swap(u);
    seconds[Stresses] += Measure([&] { korvex::RecoverShellStresses(model); });
    seconds[Averages] += Measure([&] { korvex::AverageNodeStresses(model); });
  }
  return seconds;
}

// The sum of the stages from `first` on.
double SumFrom(const Seconds& seconds, std::size_t first) {
  return std::accumulate(seconds.begin() + static_cast<std::ptrdiff_t>(first), seconds.end(), 0.0);
}

// The median over all rounds of what value(number of the round) gives.
double MedianOf(std::size_t rounds, const std::function<double(std::size_t)>& value) {
  std::vector<double> values;
  for (std::size_t round = 0; round < rounds; ++round) values.push_back(value(round));
  return korvex::bench::Median(values);
}

// Prints the medians of a line for one case and for many, and the median of their ratio.
void PrintLine(const char* name, const std::vector<Seconds>& one, const std::vector<Seconds>& many,
               const std::function<double(const Seconds&)>& value) {
  const double ofOne = MedianOf(one.size(), [&](std::size_t r) { return value(one[r]); });
  const double ofMany = MedianOf(one.size(), [&](std::size_t r) { return value(many[r]); });
  const double ratio =
      MedianOf(one.size(), [&](std::size_t r) { return value(many[r]) / value(one[r]); });
  std::printf("%-28s %9.3f %9.3f %9.2f\n", name, ofOne, ofMany, ratio);
}

void CompareCases(const char* name, int side, bool isTilted, int rounds) {
  constexpr std::size_t Many = 20;
  const std::string text = korvex::WriteTables(MakePlate(side, isTilted));
  std::vector<Seconds> one, many;
  for (int round = 0; round < rounds; ++round) {
    one.push_back(SolveCases(text, 1));
    many.push_back(SolveCases(text, Many));
  }
  std::printf("\n%s plate of %d shells, seconds\n%-28s    1 case  %zu cases     ratio\n", name,
              side * side, "", Many);
  for (std::size_t stage = 0; stage < StageCount; ++stage) {
    PrintLine(StageNames[stage], one, many, [=](const Seconds& s) { return s[stage]; });
  }
  PrintLine("all", one, many, [](const Seconds& s) { return SumFrom(s, Read); });
  PrintLine("all but the model files", one, many,
            [](const Seconds& s) { return SumFrom(s, Load); });
  std::fflush(stdout);
}

}  // namespace

// Arguments: the side of the plates in elements (200), the number of rounds (5).
int main(int count, char** arguments) {
  const int side = count > 1 ? std::atoi(arguments[1]) : 200;
  const int rounds = count > 2 ? std::atoi(arguments[2]) : 5;
  CompareCases("flat", side, false, rounds);
  CompareCases("tilted", side, true, rounds);
  return 0;
}
