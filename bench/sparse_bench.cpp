// The sparse engine beside MUMPS called directly: the same matrix of the free dofs, the same order
// by METIS, MUMPS with its own settings for symmetric or positive definite matrices; medians of
// rounds in which all take turns.
//
//   sparse_bench MODEL SIZE [ROUNDS [THREADS [FOLDER]]]
//
// MODEL: plate (shuffled, plane), grillage, ring, box, girders. SIZE: thousands of equations,
// about. FOLDER: for the factors out of core. POSIX systems.
#include <dmumps_c.h>
#include <sys/resource.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/gigabyte.h"
#include "engine/solve_together.h"
#include "model_of_tables.h"
#include "named_models.h"
#include "report/stop.h"
#include "sparse/blas_threads.h"
#include "sparse/free_matrix.h"
#include "sparse/node_order.h"

namespace {

using korvex::BytesPerGigabyte;
using korvex::bench::MeasureBoth;
using korvex::bench::MedianOf;
using korvex::bench::Seconds;

void PrintRatio(const char* name, const Seconds& engine, const Seconds& other) {
  std::printf("  %-28s %8.2f s, processor %8.2f s; engine over it %.3f, %.3f\n", name, other.wall,
              other.processor, engine.wall / other.wall, engine.processor / other.processor);
}

// The matrix as a program has it that calls MUMPS itself, with the order and the load.
struct DirectSystem {
  kvx::UpperMatrix A;
  std::vector<MUMPS_INT> rows, columns;  // coordinates of the entries, from 1 on
  std::vector<MUMPS_INT> places;         // in the order, from 1 on
  std::vector<double> x;                 // holds the load, gets the solution
};

// Assembled as the engine does it.
void MakeDirectSystem(const korvex::Model& model, DirectSystem& system) {
  kvx::NodeGraph graph;
  kvx::BuildNodeGraph(model.Tables, graph);
  kvx::FreeDofs dofs;
  kvx::ListFreeDofs(model.Tables, dofs);
  kvx::FreeGraph free;
  kvx::BuildFreeGraph(graph, dofs, free);
  std::vector<std::int32_t> order;
  kvx::FindSparseOrder(free.graph, order);
  kvx::UpperMatrix& A = system.A;
  kvx::FixedRows C;
  kvx::AssembleFree(model, graph, dofs, {}, A, C);
  system.places = kvx::PlaceFreeDofs(free, order);
  for (MUMPS_INT& place : system.places) ++place;
  for (std::size_t i = 0; i < dofs.equations.size(); ++i) {
    for (std::int64_t k = A.begins[i]; k < A.begins[i + 1]; ++k) {
      system.rows.push_back(static_cast<MUMPS_INT>(i) + 1);
      system.columns.push_back(A.columns[static_cast<std::size_t>(k)] + 1);
    }
  }
  for (const std::int32_t equation : dofs.equations) {
    system.x.push_back(model.LoadVector[static_cast<std::size_t>(equation)]);
  }
}

void GiveToMumps(DirectSystem& system, DMUMPS_STRUC_C& id) {
  for (std::size_t stream = 0; stream < 3; ++stream) id.icntl[stream] = -1;
  id.icntl[3] = 0;
  id.icntl[6] = 1;
  id.perm_in = system.places.data();
  id.n = static_cast<MUMPS_INT>(system.x.size());
  id.nnz = static_cast<MUMPS_INT8>(system.rows.size());
  id.irn = system.rows.data();
  id.jcn = system.columns.data();
  id.a = system.A.values.data();
  id.rhs = system.x.data();
  id.nrhs = 1;
  id.lrhs = id.n;
}

// MUMPS counts in millions of bytes.
double GigabytesOf(MUMPS_INT millions) {
  return 1e6 * static_cast<double>(millions) / BytesPerGigabyte;
}

void PrintJob(const DMUMPS_STRUC_C& id, const Seconds& seconds) {
  std::printf("   direct %d job %d %.2f s, processor %.2f s", id.sym, id.job, seconds.wall,
              seconds.processor);
  if (id.infog[0] < 0) std::printf("  failed: %d %d", id.infog[0], id.infog[1]);
  if (id.job == 1) {
    std::printf(" foreseen %.3f GB, out of core %.3f GB, %.3e flops", GigabytesOf(id.infog[15]),
                GigabytesOf(id.infog[25]), id.rinfog[0]);
  }
  if (id.job == 2) {
    std::printf(" used %.3f of %.3f GB, entries %d, peak %d", GigabytesOf(id.infog[20]),
                GigabytesOf(id.infog[18]), id.infog[8], id.infog[10]);
  }
  std::printf("\n");
}

// As a program would that has the matrix: coordinates, the order, three calls. sym: 2, or 1 for a
// positive definite matrix.
void SolveDirectly(const korvex::Model& model, MUMPS_INT sym) {
  DirectSystem system;
  MakeDirectSystem(model, system);
  DMUMPS_STRUC_C id{};
  id.sym = sym;
  id.par = 1;
  id.comm_fortran = -987654;
  id.job = -1;
  dmumps_c(&id);
  GiveToMumps(system, id);
  for (const MUMPS_INT job : {1, 2, 3}) {
    const Seconds seconds = MeasureBoth([&] {
      id.job = job;
      dmumps_c(&id);
    });
    PrintJob(id, seconds);
  }
  id.job = -2;
  dmumps_c(&id);
}

void SolveByEngine(korvex::Model& model, const kvx::EngineSettings& settings,
                   kvx::SolutionPlan& plan, kvx::SolutionRecord& record) {
  std::vector<std::vector<double>> loads{model.LoadVector}, displacements;
  kvx::PlanSolution(model, loads.size(), settings, {}, plan);
  kvx::SolveTogether(model, loads, settings, plan, {}, displacements, record);
}

void PrintEstimate(const char* name, const kvx::EngineEstimate& estimate) {
  std::printf("  predicted %-12s %8.2f s %8.3f GB, disk %.3f GB  %s\n", name, estimate.seconds,
              static_cast<double>(estimate.bytes) / BytesPerGigabyte,
              static_cast<double>(estimate.diskBytes) / BytesPerGigabyte, estimate.reason.c_str());
}

void Print(const kvx::SolutionPlan& plan, const kvx::SolutionRecord& record) {
  PrintEstimate("skyline", plan.skyline);
  PrintEstimate("sparse", plan.sparse);
  PrintEstimate("out of core", plan.outOfCore);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf(
      "  %lld equations, %lld free: order %.2f s, factor %.2f s, solution %.2f s, %.3e "
      "flops\n  tables %.3f GB, disk %.3f GB, the process so far %.3f GB\n",
      static_cast<long long>(record.equations), static_cast<long long>(record.freeEquations),
      record.orderSeconds, record.factorSeconds, record.solveSeconds, record.flops,
      static_cast<double>(record.bytes) / BytesPerGigabyte,
      static_cast<double>(record.diskBytes) / BytesPerGigabyte,
      static_cast<double>(usage.ru_maxrss) * 1024.0 / BytesPerGigabyte);
  const kvx::LoadQuality& load = record.loads.front();
  std::printf(
      "  residual %.2e, backward error %.2e, condition %.2e, %.1f digits lost, %d steps of "
      "refinement\n",
      load.residual, load.backwardError, load.condition, load.digitsLost, record.refinementSteps);
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 3) {
    std::printf("usage: sparse_bench MODEL SIZE [ROUNDS [THREADS [FOLDER]]]\n");
    return EXIT_FAILURE;
  }
  korvex::ModelTables tables;
  if (!korvex::bench::MakeNamedModel(argv[1], 1000.0 * std::atof(argv[2]), tables)) {
    std::printf("There is no model \"%s\".\n", argv[1]);
    return EXIT_FAILURE;
  }
  const int rounds = argc > 3 ? std::atoi(argv[3]) : 3;
  kvx::EngineSettings settings;
  settings.choice = kvx::EngineChoice::Sparse;
  if (argc > 4) settings.threads = std::atoi(argv[4]);
  if (argc > 5) settings.outOfCore = argv[5];
  kvx::SetBlasThreads(settings.threads);
  korvex::Model model;
  korvex::bench::ReadTables(tables, model);
  std::vector<Seconds> engine, symmetric, positive;
  for (int round = 0; round < std::max(rounds, 1); ++round) {
    kvx::SolutionPlan plan;
    kvx::SolutionRecord record;
    engine.push_back(MeasureBoth([&] { SolveByEngine(model, settings, plan, record); }));
    if (round == 0) Print(plan, record);
    std::fflush(stdout);
    if (rounds == 0) return EXIT_SUCCESS;  // the engine alone
    symmetric.push_back(MeasureBoth([&] { SolveDirectly(model, 2); }));
    positive.push_back(MeasureBoth([&] { SolveDirectly(model, 1); }));
  }
  const Seconds seconds = MedianOf(engine);
  std::printf("%s:\n", argv[1]);
  PrintRatio("engine", seconds, seconds);
  PrintRatio("MUMPS, symmetric", seconds, MedianOf(symmetric));
  PrintRatio("MUMPS, positive definite", seconds, MedianOf(positive));
  return EXIT_SUCCESS;
} catch (const korvex::Stop& stop) {
  std::printf("%s\n", stop.text.c_str());
  return EXIT_FAILURE;
}
