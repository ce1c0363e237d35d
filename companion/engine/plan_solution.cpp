#include "engine/plan_solution.h"

#include <algorithm>
#include <chrono>

#include "base/dof_counts.h"
#include "engine/engine_costs.h"
#include "engine/factor_folder.h"
#include "finding/amount_text.h"
#include "platform/free_memory.h"
#include "ranks/ranks.h"
#include "renumber/node_graph.h"
#include "report/stop.h"
#include "sparse/blas_threads.h"
#include "sparse/factor_size.h"
#include "sparse/free_dofs.h"
#include "sparse/node_order.h"
#include "sparse/refined_columns.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace {

// Seconds. What the skyline solves sooner is not worth an order of the nodes, and keeps the bytes
// of the solver; so does what it solves sooner than the sparse engine can in any order.
constexpr double SoonSolved = 0.03;

struct Choice {
  const EngineSettings& settings;
  std::uint64_t allowed;  // bytes
  bool isLimitGiven;      // by the user; else it is what is free
};

Choice MakeChoice(const EngineSettings& settings) {
  const std::uint64_t free =
      korvex::ReadFreeMemory() / static_cast<std::uint64_t>(CountRanksHere());
  const bool isLimitGiven = settings.memory > 0 && settings.memory <= free;
  return {settings, isLimitGiven ? settings.memory : free, isLimitGiven};
}

// Of what is limited: the solution, or the process.
std::uint64_t CountBytes(const Choice& choice, const EngineEstimate& estimate) {
  return estimate.bytes + (choice.isLimitGiven ? 0 : estimate.startBytes);
}

std::string SizeText(const EngineEstimate& estimate) {
  return AboutText(estimate.seconds) + " and " + GigabyteText(estimate.bytes);
}

// Where memory is too small, says so.
void LookWhetherItFits(const Choice& choice, EngineEstimate& estimate) {
  estimate.isPossible = CountBytes(choice, estimate) <= choice.allowed;
  if (estimate.isPossible) return;
  estimate.reason = "it takes " + GigabyteText(CountBytes(choice, estimate)) + " of memory, " +
                    (choice.isLimitGiven ? "which is more than the " + AllowedText(choice.allowed) +
                                               " that it may take"
                                         : "and there are " + FreeText(choice.allowed));
}

void LookWhetherDiskFits(const Choice& choice, EngineEstimate& estimate) {
  if (!estimate.isPossible) return;
  const std::string& folder = choice.settings.outOfCore;
  estimate.isPossible = false;
  if (folder.empty()) {
    estimate.reason = "there is no folder for the factors";
  } else if (estimate.diskBytes > ReadFreeDisk(folder)) {
    estimate.reason = "its factors take " + GigabyteText(estimate.diskBytes) +
                      " on the disk, and there are " + AllowedText(ReadFreeDisk(folder)) + " free";
  } else {
    estimate.isPossible = true;
  }
}

// What rank 0 takes of it, which has most, and the time of all. Each further rank adds half of one
// to the speed: they wait for each other. The parts are not of the same size, and rank 0 keeps what
// is only there once. A rank's elements are not counted: they go before the factor comes, which
// takes more.
void ShareAmongRanks(const SparseTask& task, EngineEstimate& estimate) {
  constexpr double Unevenness = 1.25, Gain = 0.5;
  constexpr std::uint64_t BytesPerEquation = 300;  // of tables that are not shared
  const int ranks = CountRanks();
  if (ranks == 1) return;
  const auto equations = static_cast<std::uint64_t>(task.equations);
  const std::uint64_t own = std::min(
      estimate.bytes, equations * BytesPerEquation + CountColumnBytes(equations, task.loads));
  estimate.bytes = own + static_cast<std::uint64_t>(static_cast<double>(estimate.bytes - own) *
                                                    Unevenness / static_cast<double>(ranks));
  estimate.seconds /= 1.0 + Gain * static_cast<double>(ranks - 1);
}

// The sparse engine in memory and out of core.
void EstimateSparse(const Choice& choice, const FreeGraph& free, const SparseTask& task,
                    SolutionPlan& plan) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point begin = Clock::now();
  MakeGuarded(
      choice.settings, [&] { FindSparseOrder(free.graph, plan.order); }, [] {});
  plan.orderSeconds = std::chrono::duration<double>(Clock::now() - begin).count();
  FactorSize size;
  MeasureFactor(free.graph, free.dofs, plan.order, size);
  PredictSparse(size, task, plan.sparse);
  PredictOutOfCore(size, task, plan.outOfCore);
  plan.sparse.startBytes = plan.outOfCore.startBytes = SparseStartBytes;
  ShareAmongRanks(task, plan.sparse);
  ShareAmongRanks(task, plan.outOfCore);
  LookWhetherItFits(choice, plan.sparse);
  LookWhetherItFits(choice, plan.outOfCore);
  LookWhetherDiskFits(choice, plan.outOfCore);
}

[[noreturn]] void StopTooLarge(const Choice& choice, const SolutionPlan& plan) {
  const bool fitsOutOfCore =
      plan.outOfCore.bytes > 0 && CountBytes(choice, plan.outOfCore) <= choice.allowed;
  const bool isDiskFull = fitsOutOfCore && !choice.settings.outOfCore.empty();
  if (isDiskFull) {
    const bool fitsWithout = plan.sparse.isPossible;
    throw korvex::Stop{korvex::StopKind::ResultFile,
                       "The factors do not fit out of core: " + plan.outOfCore.reason +
                           ". Give a folder on another disk: --out-of-core DIR" +
                           (fitsWithout ? "; or leave it out: they fit into memory." : ".")};
  }
  std::string text = "The solution does not fit into memory: ";
  const auto add = [&](const char* name, const EngineEstimate& estimate) {
    if (estimate.bytes > 0)
      text += name + (' ' + GigabyteText(CountBytes(choice, estimate))) + ", ";
  };
  if (choice.settings.choice != EngineChoice::Sparse) add("the skyline takes", plan.skyline);
  if (choice.settings.choice != EngineChoice::Skyline) {
    add("the sparse engine takes", plan.sparse);
    add("with its factors out of core", plan.outOfCore);
  }
  text += (choice.isLimitGiven ? "and it may take " + AllowedText(choice.allowed)
                               : "and there are " + FreeText(choice.allowed)) +
          '.';
  std::string ways;
  if (choice.settings.choice == EngineChoice::Skyline && HasSparseEngine()) {
    ways += " Try --engine auto, which looks at the sparse engine, too.";
  }
  if (choice.settings.outOfCore.empty() && fitsOutOfCore) {
    ways += " Give a folder for the factors: --out-of-core DIR.";
  }
  if (choice.settings.choice == EngineChoice::Sparse && plan.skyline.isPossible) {
    ways += " The skyline fits: --engine skyline.";
  } else if (!IsProgramOfRanks()) {
    ways += " See whether kvx renumber finds a better order of the nodes, for the skyline.";
  }
  if (choice.isLimitGiven) ways += " Allow more with --memory.";
  if (choice.settings.choice != EngineChoice::Skyline && HasSparseEngine()) {
    ways += IsProgramOfRanks() ? " Start more ranks, on more machines."
                               : " Share the work among several machines with kvx-mpi.";
  }
  throw korvex::Stop{korvex::StopKind::Notice, text + ways};
}

void Take(EngineChoice engine, bool isOutOfCore, const std::string& reason, SolutionPlan& plan) {
  plan.engine = engine;
  plan.isOutOfCore = isOutOfCore;
  plan.reason = reason;
}

// Whether the sparse engine cannot be loaded; notes it.
bool IsMissing(SolutionPlan& plan) {
  const std::string reason = WhyNotLoaded();
  if (reason.empty()) return false;
  plan.sparse.isPossible = plan.outOfCore.isPossible = false;
  plan.sparse.reason = plan.outOfCore.reason = "cannot be loaded: " + reason;
  return true;
}

// The fastest of those that are possible.
void TakeFastest(const Choice& choice, SolutionPlan& plan) {
  const EngineEstimate& sparse = plan.sparse.isPossible ? plan.sparse : plan.outOfCore;
  const bool isOutOfCore = !plan.sparse.isPossible;
  if (!plan.skyline.isPossible && !sparse.isPossible) StopTooLarge(choice, plan);
  if (plan.skyline.isPossible && sparse.isPossible && IsMissing(plan)) {
    return Take(EngineChoice::Skyline, false,
                "The skyline is the only engine: the sparse one " + plan.sparse.reason + ".", plan);
  }
  const std::string skylineText = "the skyline takes " + SizeText(plan.skyline);
  const std::string sparseText = std::string("the sparse engine") +
                                 (isOutOfCore ? " out of core" : "") + " takes " + SizeText(sparse);
  if (!sparse.isPossible) {
    Take(EngineChoice::Skyline, false,
         "The skyline fits; the sparse engine does not: " + plan.sparse.reason + ".", plan);
  } else if (!plan.skyline.isPossible) {
    Take(EngineChoice::Sparse, isOutOfCore,
         "The skyline does not fit: " + plan.skyline.reason + "; " + sparseText + ".", plan);
  } else if (plan.skyline.seconds <= sparse.seconds) {
    Take(EngineChoice::Skyline, false,
         "The faster one is taken: " + skylineText + "; " + sparseText + ".", plan);
  } else {
    Take(EngineChoice::Sparse, isOutOfCore,
         "The faster one is taken: " + sparseText + "; " + skylineText + ".", plan);
  }
}

void TakeAsked(const Choice& choice, SolutionPlan& plan) {
  if (choice.settings.choice == EngineChoice::Skyline) {
    if (!plan.skyline.isPossible) StopTooLarge(choice, plan);
    Take(EngineChoice::Skyline, false, "The skyline was asked for.", plan);
    return;
  }
  const bool isOutOfCore = !choice.settings.outOfCore.empty();
  const EngineEstimate& asked = isOutOfCore ? plan.outOfCore : plan.sparse;
  if (!asked.isPossible) StopTooLarge(choice, plan);
  Take(EngineChoice::Sparse, isOutOfCore,
       std::string("The sparse engine ") +
           (IsProgramOfRanks() ? "is that of kvx-mpi" : "was asked for") +
           (isOutOfCore ? ", out of core." : "."),
       plan);
}

// The sparse engine cannot be had.
void TakeSkyline(const Choice& choice, SolutionPlan& plan) {
  plan.sparse.reason = plan.outOfCore.reason = NoSparseEngine;
  if (choice.settings.choice == EngineChoice::Sparse) {
    throw korvex::Stop{korvex::StopKind::Notice, std::string("There is no sparse engine: ") +
                                                     NoSparseEngine + ". Use --engine skyline."};
  }
  if (!plan.skyline.isPossible) StopTooLarge(choice, plan);
  Take(EngineChoice::Skyline, false,
       std::string("The skyline is the only engine: ") + NoSparseEngine + ".", plan);
}

}  // namespace

void PlanSolution(const korvex::Model& model, std::size_t loads, const EngineSettings& settings,
                  const korvex::ShareCallback& share, SolutionPlan& plan) {
  plan = {};
  const Choice choice = MakeChoice(settings);
  plan.equations = model.NEQ;
  FreeDofs dofs;
  ListFreeDofs(model.Tables, dofs);
  plan.freeEquations = static_cast<std::int64_t>(dofs.equations.size());
  NodeGraph graph;
  BuildNodeGraph(model.Tables, graph);
  PredictSkyline(graph, loads, settings.threads, plan.skyline);
  LookWhetherItFits(choice, plan.skyline);
  if (IsProgramOfRanks() && settings.choice != EngineChoice::Skyline) {
    plan.skyline.isPossible = false;
    plan.skyline.reason = "kvx-mpi has the sparse engine alone";
  }
  if (share) share(0.1);
  if (settings.choice == EngineChoice::Skyline) return TakeAsked(choice, plan);
  if (!HasSparseEngine()) return TakeSkyline(choice, plan);
  const double soon = std::max(SoonSolved, LeastSparseSeconds(plan.freeEquations));
  if (settings.choice == EngineChoice::Auto && plan.skyline.seconds < soon &&
      plan.skyline.isPossible) {
    plan.sparse.reason = plan.outOfCore.reason = "not looked at, since the skyline takes so little";
    return Take(EngineChoice::Skyline, false,
                "The model is soon solved: the skyline takes " + SizeText(plan.skyline) + ".",
                plan);
  }
  FreeGraph free;
  BuildFreeGraph(graph, dofs, free);
  const SparseTask task{plan.freeEquations, CountMatrixBytes(graph, dofs),
                        CountFixedBytes(graph, dofs), loads, settings.threads};
  EstimateSparse(choice, free, task, plan);
  if (share) share(1.0);
  if (settings.choice == EngineChoice::Auto) {
    TakeFastest(choice, plan);
  } else {
    TakeAsked(choice, plan);
  }
}

}  // namespace kvx
