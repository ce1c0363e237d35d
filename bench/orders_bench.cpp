// Orders of the nodes on meshes as they come, and what the best of them saves: predicted by the
// order alone, and measured by solving the model before and after.
//
// A solution runs in a process of its own, so that its memory can be told: processor time of
// assembly, factorisation and back substitution, and the most memory that the process has. What
// would take more than 3 GB is not solved. POSIX systems.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

#include "base/gigabyte.h"
#include "deck/write_tables.h"
#include "engine/solve_together.h"
#include "measure.h"
#include "model/read_input_file.h"
#include "order_models.h"
#include "platform/vector_bits.h"
#include "renumber/orders.h"
#include "renumber/permute_nodes.h"
#include "size/check_size.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace {

using korvex::ModelTables;

constexpr double MostGigabytes = 3.0;  // of a matrix that is solved here

struct Measured {
  double gigabytes = 0.0, seconds = 0.0;  // 0: not solved
};

void SolveHere(const ModelTables& tables) {
  korvex::Model model;
  korvex::ReadInputText(korvex::WriteTables(tables), model);
  korvex::NumberEquations(model);
  korvex::AssembleLoadVector(model);
  std::vector<std::vector<double>> loads{model.LoadVector}, displacements;
  kvx::SolutionRecord record;
  kvx::SolveTogether(model, loads, {}, {}, {}, displacements, record);
}

// What a child takes for the work.
rusage RunInChild(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    std::_Exit(EXIT_SUCCESS);
  }
  rusage usage{};
  int status = 0;
  if (child < 0 || wait4(child, &status, 0, &usage) < 0 || status != 0) std::abort();
  return usage;
}

double SecondsOf(const rusage& usage) {
  constexpr double Microseconds = 1e-6;
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         Microseconds * static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

Measured Solve(const ModelTables& tables, double gigabytes) {
  if (gigabytes > MostGigabytes) return {};
  const rusage usage = RunInChild([&] { SolveHere(tables); });
  constexpr double Kilobyte = 1024.0;  // ru_maxrss of Linux
  return {static_cast<double>(usage.ru_maxrss) * Kilobyte / korvex::BytesPerGigabyte,
          SecondsOf(usage)};
}

void Print(const char* when, double gigabytes, double seconds, const Measured& measured) {
  std::printf("  %-8s %9.3f GB %10.2f s", when, gigabytes, seconds);
  if (measured.seconds > 0.0) {
    std::printf(" | %6.3f GB %8.2f s\n", measured.gigabytes, measured.seconds);
  } else {
    std::printf(" |    not solved here\n");
  }
}

void Show(const char* name, ModelTables& tables) {
  kvx::NodeGraph graph;
  kvx::BestOrder best;
  const double seconds = korvex::bench::Measure([&] {
    kvx::BuildNodeGraph(tables, graph);
    kvx::FindBestOrder(tables, graph, best);
  });
  std::printf("%s, %zu nodes: %s, found in %.2f s\n", name, tables.Nodes.size(), best.name.c_str(),
              seconds);
  const kvx::SolutionSize size = kvx::PredictSize(best, korvex::WidestVectorBits());
  Print("before", size.gigabytes, size.seconds, Solve(tables, size.gigabytes));
  kvx::PermuteNodes(best.order, tables);
  Print("after", size.bestGigabytes, size.bestSeconds, Solve(tables, size.bestGigabytes));
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  using namespace korvex::bench;
  const bool isLarge = argc > 1 && std::strcmp(argv[1], "large") == 0;
  std::printf("              predicted                |      measured\n");
  const auto show = [](const char* name, const std::function<void(ModelTables&)>& make) {
    ModelTables tables;
    make(tables);
    Show(name, tables);
  };
  if (isLarge) {
    show("shuffled plate", [](ModelTables& t) { MakeShuffledPlate(1000, false, t); });
    show("stiffened grillage", [](ModelTables& t) { MakeGrillage(1000, 630, t); });
    return EXIT_SUCCESS;
  }
  show("shuffled plate", [](ModelTables& t) { MakeShuffledPlate(40, false, t); });
  show("stiffened grillage", [](ModelTables& t) { MakeGrillage(1040, 60, t); });
  show("small grillage", [](ModelTables& t) { MakeGrillage(80, 60, t); });
  show("ring", [](ModelTables& t) { MakeRing(600, 10, t); });
  show("box girder", [](ModelTables& t) { MakeBoxGirder(100, 20, 10, t); });
  return EXIT_SUCCESS;
}
