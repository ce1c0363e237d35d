// What each engine is predicted to take and takes, and what --engine auto takes beside the better
// one: a table, a line for each model.
//
//   engines_bench [ROUNDS [THREADS [SECONDS [MODEL ...]]]]
//
// ROUNDS: 3; medians of them. THREADS: 1. SECONDS: what is predicted to take longer, or more than
// half of the free memory, is not solved; 30. MODEL: the beginnings of names; all without.
//
// Of the skyline: assembly, solution, residual. Of the sparse engine: order, assembly, factor,
// refined solution with its accuracy. Of auto: its plan, with the order that it looks for, and the
// solution by the engine taken. With one thread, times are of the processor, which other programs
// do not disturb; with more, by the clock.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "engine/solve_together.h"
#include "model_of_tables.h"
#include "order_models.h"
#include "platform/free_memory.h"
#include "report/stop.h"
#include "sparse/blas_threads.h"
#include "stage_models.h"

namespace {

using korvex::ModelTables;
using kvx::EngineChoice;
using kvx::SolutionPlan;

struct BenchModel {
  std::string name;
  std::function<void(ModelTables&)> make;
};

std::vector<BenchModel> ListModels() {
  using namespace korvex::bench;
  std::vector<BenchModel> models;
  const auto add = [&](const std::string& name, const std::function<void(ModelTables&)>& make) {
    models.push_back({name, make});
  };
  for (const int side : {20, 40, 60, 80, 100, 140, 200}) {
    const std::string size = std::to_string(side) + " x " + std::to_string(side);
    add("flat plate " + size, [=](ModelTables& t) { MakePlate(side, side, false, t); });
    add("tilted plate " + size, [=](ModelTables& t) { MakePlate(side, side, true, t); });
  }
  for (const int side : {20, 40, 60}) {
    const std::string size = std::to_string(side) + " x " + std::to_string(side);
    add("shuffled plate " + size, [=](ModelTables& t) { MakeShuffledPlate(side, true, t); });
  }
  for (const int width : {10, 30, 60}) {
    const std::string size = std::to_string(width) + " x 1000";
    add("strip " + size, [=](ModelTables& t) { MakePlate(width, 1000, true, t); });
  }
  add("stiffened plate 40 x 500", [](ModelTables& t) { t = MakeStagePlate(40, 500); });
  add("stiffened plate 120 x 120", [](ModelTables& t) { t = MakeStagePlate(120, 120); });
  for (const int side : {20, 60, 120}) {
    add("beam grillage " + std::to_string(side),
        [=](ModelTables& t) { t = MakeStageGrillage(side); });
  }
  for (const int width : {20, 40, 80}) {
    add("shell grillage " + std::to_string(2 * width) + " x " + std::to_string(width),
        [=](ModelTables& t) { MakeGrillage(2 * width, width, t); });
  }
  add("ring 240 x 60", [](ModelTables& t) { MakeRing(240, 60, t); });
  for (const int height : {6, 12, 24}) {
    add("box girder " + std::to_string(6 * height) + " x " + std::to_string(2 * height) + " x " +
            std::to_string(height),
        [=](ModelTables& t) { MakeBoxGirder(6 * height, 2 * height, height, t); });
  }
  for (const int side : {6, 10, 16, 22}) {
    const std::string edge = std::to_string(side);
    add("lattice " + edge + " x " + edge + " x " + edge,
        [=](ModelTables& t) { MakeLattice(side, side, side, t); });
  }
  add("mast 4 x 4 x 400", [](ModelTables& t) { MakeLattice(4, 4, 400, t); });
  return models;
}

struct Settings {
  int rounds = 3, threads = 1;
  double seconds = 30.0;
};

struct Measured {
  double predicted = 0.0, plan = 0.0, solution = 0.0;  // seconds; of medians
  bool isSolved = false;
  EngineChoice taken = EngineChoice::Auto;
};

double TimeOf(const korvex::bench::Seconds& seconds, int threads) {
  return threads == 1 ? seconds.processor : seconds.wall;
}

// Plans with the choice. Returns the seconds that it takes, the order of the nodes with them.
double Plan(const korvex::Model& model, const Settings& settings, EngineChoice choice,
            SolutionPlan& plan) {
  kvx::EngineSettings engine;
  engine.choice = choice;
  engine.threads = settings.threads;
  return TimeOf(korvex::bench::MeasureBoth([&] { kvx::PlanSolution(model, 1, engine, {}, plan); }),
                settings.threads);
}

double Solve(korvex::Model& model, const Settings& settings, const SolutionPlan& plan) {
  kvx::EngineSettings engine;
  engine.threads = settings.threads;
  std::vector<std::vector<double>> loads{model.LoadVector}, displacements;
  kvx::SolutionRecord record;
  return TimeOf(korvex::bench::MeasureBoth([&] {
                  kvx::SolveTogether(model, loads, engine, plan, {}, displacements, record);
                }),
                settings.threads);
}

bool IsSmall(const kvx::EngineEstimate& estimate, const Settings& settings) {
  return estimate.seconds <= settings.seconds && estimate.bytes <= korvex::ReadFreeMemory() / 2;
}

Measured MeasureEngine(korvex::Model& model, const Settings& settings, EngineChoice choice) {
  Measured measured;
  SolutionPlan plan;
  std::vector<double> plans, solutions;
  for (int round = 0; round < settings.rounds; ++round) {
    try {
      plans.push_back(Plan(model, settings, choice, plan));
    } catch (const korvex::Stop&) {  // it does not fit
      measured.predicted = choice == EngineChoice::Skyline ? plan.skyline.seconds : 0.0;
      return measured;
    }
    measured.taken = plan.engine;
    const bool isSkyline = plan.engine == EngineChoice::Skyline;
    const kvx::EngineEstimate& estimate = isSkyline ? plan.skyline : plan.sparse;
    measured.predicted = estimate.seconds;
    if (!IsSmall(estimate, settings)) return measured;
    if (choice != EngineChoice::Auto) solutions.push_back(Solve(model, settings, plan));
  }
  measured.isSolved = true;
  measured.plan = korvex::bench::Median(plans);
  if (!solutions.empty()) measured.solution = korvex::bench::Median(solutions);
  return measured;
}

void PrintCell(double value, bool isKnown) {
  if (isKnown) {
    std::printf(" %.3g |", value);
  } else {
    std::printf(" |");
  }
}

// Returns the ratio of auto to the better engine; 0: one was not measured.
double CompareEngines(const BenchModel& bench, const Settings& settings) {
  ModelTables tables;
  bench.make(tables);
  korvex::Model model;
  korvex::bench::ReadTables(tables, model);
  const Measured skyline = MeasureEngine(model, settings, EngineChoice::Skyline);
  const Measured sparse = MeasureEngine(model, settings, EngineChoice::Sparse);
  const Measured both = MeasureEngine(model, settings, EngineChoice::Auto);
  const bool takesSparse = both.taken == EngineChoice::Sparse;
  // The plan of the skyline looks for no order; that of the sparse engine belongs to its work.
  const double ofSkyline = skyline.plan + skyline.solution;
  const double ofSparse = sparse.plan + sparse.solution;
  const double ofAuto = both.plan + (takesSparse ? sparse.solution : skyline.solution);
  const bool isKnown = takesSparse ? sparse.isSolved : skyline.isSolved;
  std::printf("| %s | %d |", bench.name.c_str(), static_cast<int>(model.NEQ));
  PrintCell(skyline.predicted, skyline.predicted > 0.0);
  PrintCell(ofSkyline, skyline.isSolved);
  PrintCell(sparse.predicted, sparse.predicted > 0.0);
  PrintCell(ofSparse, sparse.isSolved);
  std::printf(" %s |", takesSparse ? "sparse" : "skyline");
  PrintCell(ofAuto, isKnown);
  // What was not solved was predicted to take far longer.
  double better = sparse.isSolved ? ofSparse : ofSkyline;
  if (skyline.isSolved) better = std::min(better, ofSkyline);
  const double ratio = isKnown && better > 0.0 ? ofAuto / better : 0.0;
  PrintCell(ratio, ratio > 0.0);
  std::printf("\n");
  std::fflush(stdout);
  return ratio;
}

bool IsWanted(const std::string& name, int count, char** arguments) {
  constexpr int FirstName = 4;
  if (count <= FirstName) return true;
  return std::any_of(arguments + FirstName, arguments + count,
                     [&](const char* word) { return name.rfind(word, 0) == 0; });
}

}  // namespace

int main(int count, char** arguments) {
  Settings settings;
  if (count > 1) settings.rounds = std::max(std::atoi(arguments[1]), 1);
  if (count > 2) settings.threads = std::max(std::atoi(arguments[2]), 1);
  if (count > 3) settings.seconds = std::atof(arguments[3]);
  kvx::SetBlasThreads(settings.threads);
  std::printf("%d thread(s), medians of %d rounds, seconds %s\n\n", settings.threads,
              settings.rounds, settings.threads == 1 ? "of the processor" : "by the clock");
  std::printf(
      "| model | equations | skyline: predicted | measured | sparse: predicted | measured | auto "
      "takes | auto | over the better |\n|---|---|---|---|---|---|---|---|---|\n");
  double worst = 0.0;
  std::string name;
  for (const BenchModel& model : ListModels()) {
    if (!IsWanted(model.name, count, arguments)) continue;
    const double ratio = CompareEngines(model, settings);
    if (ratio > worst) {
      worst = ratio;
      name = model.name;
    }
  }
  std::printf("\nworst: %.2f, %s\n", worst, name.c_str());
  return EXIT_SUCCESS;
}
