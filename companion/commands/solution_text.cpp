#include "commands/solution_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "check/describe.h"
#include "commands/rough_text.h"
#include "finding/amount_text.h"
#include "finding/text_layout.h"
#include "ranks/ranks.h"

namespace kvx {

namespace {

constexpr double Billion = 1e9;

const EngineEstimate& ChosenEstimate(const SolutionPlan& plan) {
  if (plan.engine != EngineChoice::Sparse) return plan.skyline;
  return plan.isOutOfCore ? plan.outOfCore : plan.sparse;
}

void AddRow(const std::string& name, const EngineEstimate& estimate, bool isTaken,
            ResultTable& table) {
  const bool isKnown = estimate.bytes > 0;  // also where it does not fit
  table.cells.emplace_back(name);
  table.cells.emplace_back(isKnown ? DurationText(estimate.seconds) : "");
  table.cells.emplace_back(isKnown ? GigabyteNumber(estimate.bytes) : "");
  table.cells.emplace_back(estimate.diskBytes > 0 ? GigabyteNumber(estimate.diskBytes) : "");
  const std::string reason =
      isKnown || !estimate.reason.empty() ? estimate.reason : "not looked at";
  table.cells.emplace_back(isTaken ? "is taken" : CleanText(reason));
}

}  // namespace

SolutionPlan CopyWithoutOrder(SolutionPlan& plan) {
  std::vector<std::int32_t> order;
  order.swap(plan.order);
  SolutionPlan copy = plan;
  order.swap(plan.order);
  return copy;
}

double CountCorrectDigits(const LoadQuality& load) {
  if (std::isinf(load.condition)) return 0.0;
  const bool isKnown = std::isfinite(load.backwardError) && !std::isnan(load.condition);
  if (!isKnown || load.condition == 0.0) return std::numeric_limits<double>::quiet_NaN();
  constexpr double Rounding = std::numeric_limits<double>::epsilon() / 2.0;
  const double error = load.condition * std::max(load.backwardError, Rounding);
  return std::clamp(-std::log10(error), 0.0, DoubleDigits);
}

std::string EngineText(const SolutionRecord& solution) {
  std::string text = solution.engine == EngineChoice::Sparse ? "sparse" : "skyline";
  if (solution.isOutOfCore) text += ", out of core";
  if (!solution.ranks.empty()) text += ", " + CountText(solution.ranks.size(), "rank", "ranks");
  return text + ", " + CountText(static_cast<std::size_t>(solution.threads), "thread", "threads");
}

std::string DetailBlocksText(std::size_t blocks) {
  return "The detail models of beams were made in " + std::to_string(blocks) +
         " blocks: the memory does not hold all of them at once.";
}

ResultTable MakeRankTable(const std::vector<RankShare>& ranks) {
  ResultTable table;
  table.columns = {"rank", "elements", "entries", "1e9 flops", "GB"};
  for (std::size_t rank = 0; rank < ranks.size(); ++rank) {
    const RankShare& share = ranks[rank];
    table.cells.emplace_back(static_cast<std::int64_t>(rank));
    table.cells.emplace_back(static_cast<std::int64_t>(share.elements));
    table.cells.emplace_back(static_cast<std::int64_t>(share.entries));
    table.cells.emplace_back(RoughText(share.flops / Billion));
    table.cells.emplace_back(GigabyteNumber(share.bytes));
  }
  table.notes = {
      "Of each rank: elements and entries of the stiffness that it forms, its part of the "
      "factorisation, and the memory that this takes. Elements between the parts of several ranks "
      "are formed by each of them."};
  return table;
}

std::string AccuracyText(const LoadQuality& load) {
  std::string text;
  if (!std::isnan(load.residual)) text = "scaled residual " + RoughText(load.residual) + ", ";
  if (!std::isnan(load.backwardError)) {
    text += "backward error " + RoughText(load.backwardError) + ", ";
  }
  if (load.condition == 0.0) return text + "digits lost: not estimated, nothing moves";
  if (std::isnan(load.digitsLost)) return text + "digits lost: not estimated";
  if (load.digitsLost >= DoubleDigits) return text + "all digits lost";
  return text + RoughText(load.digitsLost) + " of about 16 digits lost";
}

std::string SolvingText(const std::string& what, const SolutionPlan& plan) {
  const std::string name = plan.engine == EngineChoice::Sparse ? "sparse" : "skyline";
  return what + " (" + name + (plan.isOutOfCore ? ", out of core" : "") + ", " +
         AboutText(ChosenEstimate(plan).seconds) + ')';
}

ResultTable MakePlanTable(const SolutionPlan& plan, bool fits) {
  ResultTable table;
  table.columns = {"engine", "time", "GB", "GB on disk", ""};
  const bool isSkyline = fits && plan.engine == EngineChoice::Skyline;
  const bool isSparse = fits && plan.engine == EngineChoice::Sparse;
  AddRow("skyline", plan.skyline, isSkyline, table);
  AddRow("sparse", plan.sparse, isSparse && !plan.isOutOfCore, table);
  AddRow("sparse, out of core", plan.outOfCore, isSparse && plan.isOutOfCore, table);
  table.notes = {"Predicted, before the solution. Reading, stresses and files come on top."};
  if (CountRanks() > 1) table.notes.front() += " The memory is that of one rank.";
  return table;
}

std::string PlanText(const SolutionPlan& plan, std::size_t loads) {
  return std::to_string(plan.equations) + " equations, " + std::to_string(plan.freeEquations) +
         " of them free; " + CountText(loads, "load", "loads") + ".";
}

}  // namespace kvx
