#include "size/check_size.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/dof_counts.h"
#include "base/gigabyte.h"
#include "check/describe.h"
#include "deck/row_formats.h"
#include "finding/amount_text.h"
#include "skyline/reserve_system.h"

namespace kvx {

using korvex::Section;

namespace {

constexpr double EntryBytes = 8.0;  // a double

// Shorter times are not told apart.
constexpr double ShortestSeconds = 0.01;

// From here on another order of the nodes is looked for.
constexpr double NoticeableSeconds = 0.5;

// From here on the time is told also where no better order was found.
constexpr double LongSeconds = 10.0;

// A better order is worth a word where it takes less than half of the time.
constexpr double WorthwhileShare = 0.5;

constexpr const char* RenumberRemedy =
    "Call kvx renumber: it writes the model with its nodes in that order";

// Operations of the factorisation per second by length of the vector registers, as measured on a
// 60,000-equation plate with one core of 3 GHz. Other processors differ by a factor of about two.
double SolverRate(int vectorBits) {
  if (vectorBits >= 512) return 49e9;
  if (vectorBits >= 256) return 37e9;
  if (vectorBits >= 128) return 15e9;
  return 2.4e9;
}

// Two digits: more would claim too much.
std::string About(double value) {
  if (value <= 0.0) return "0";
  const double unit = std::pow(10.0, std::floor(std::log10(value)) - 1.0);
  return NumberText(std::round(value / unit) * unit);
}

void AddOrderFinding(const CheckedModel& model, const SolutionSize& size, FindingList& findings) {
  const bool isBetter = SavesMuch(size);
  if (!isBetter && size.seconds < LongSeconds) return;
  Finding finding = MakeFinding("K501");
  finding.line = model.titleLines[IndexOf(Section::Nodes)];
  finding.table = korvex::FormatOf(Section::Nodes).key;
  finding.message = "matrix " + DescribeSize(size.gigabytes, size.seconds);
  if (isBetter) {
    finding.message += "; with the nodes in another order (" + size.bestOrder + ") " +
                       DescribeSize(size.bestGigabytes, size.bestSeconds) + ".";
    finding.remedy = std::string(RenumberRemedy) + "; --undo gives the old numbers back.";
  } else {
    finding.message += "; no order was found that takes less than half of it.";
  }
  AddFinding(std::move(finding), findings);
}

// What to do where the matrix does not fit.
std::string AdviseOnMemory(const SolutionSize& size, bool hasOtherEngine) {
  std::string text;
  if (hasOtherEngine) text = "Solve it with kvx run; kvx run --dry-run tells what that takes. ";
  if (size.bestGigabytes < WorthwhileShare * size.gigabytes) {
    return text + RenumberRemedy + ", in which the skyline takes " + About(size.bestGigabytes) +
           " GB instead of " + About(size.gigabytes) + ".";
  }
  return text + (hasOtherEngine ? "Where that does not fit either, use" : "Use") +
         " a coarser mesh, or a machine with more memory.";
}

void CheckMemoryOfMatrix(const CheckedModel& model, double entries, const SizeLimits& limits,
                         const SolutionSize& size, FindingList& findings) {
  const double equations = static_cast<double>(model.tables.Nodes.size()) * korvex::DofsPerNode;
  const bool tooMany = equations > std::numeric_limits<std::int32_t>::max();
  const double bytes = EntryBytes * (entries - equations) +
                       static_cast<double>(korvex::BytesPerEquation) * equations;
  if (!tooMany && bytes <= static_cast<double>(limits.freeMemory)) return;
  Finding finding = MakeFinding("K502");
  finding.line = model.titleLines[IndexOf(Section::Nodes)];
  finding.table = korvex::FormatOf(Section::Nodes).key;
  if (tooMany) {
    finding.message = "there are " + NumberText(equations) +
                      " equations; the solver numbers at most 2147483647. The run stops.";
  } else {
    if (limits.hasOtherEngine) finding.severity = Severity::Warning;
    finding.message = "the matrix takes " + GigabyteText(static_cast<std::uint64_t>(bytes)) +
                      ", and there are " + FreeText(limits.freeMemory) + ": korvex stops" +
                      (limits.hasOtherEngine ? ", and so does the skyline of kvx; kvx run looks "
                                               "whether its sparse engine fits."
                                             : ".");
  }
  finding.remedy = tooMany ? "Use a coarser mesh." : AdviseOnMemory(size, limits.hasOtherEngine);
  AddFinding(std::move(finding), findings);
}

}  // namespace

std::string DescribeSize(double gigabytes, double seconds) {
  return About(gigabytes) + " GB, about " + About(std::max(seconds, ShortestSeconds)) + " s";
}

SolutionSize PredictSize(const BestOrder& best, int vectorBits) {
  const double rate = SolverRate(vectorBits);
  SolutionSize size;
  size.gigabytes = best.givenCost.entries * EntryBytes / korvex::BytesPerGigabyte;
  size.seconds = best.givenCost.work / rate;
  size.bestGigabytes = best.cost.entries * EntryBytes / korvex::BytesPerGigabyte;
  size.bestSeconds = best.cost.work / rate;
  size.bestOrder = best.name;
  return size;
}

bool SavesMuch(const SolutionSize& size) {
  return size.bestSeconds < WorthwhileShare * size.seconds;
}

void CheckSize(const CheckedModel& model, const SizeLimits& limits, SolutionSize& size,
               FindingList& findings) {
  NodeGraph graph;
  BuildNodeGraph(model.tables, graph);
  BestOrder best;
  best.cost = best.givenCost = MeasureOrder(graph, GivenOrder(graph));
  size = PredictSize(best, limits.vectorBits);
  if (size.seconds >= NoticeableSeconds) {
    FindBestOrder(model.tables, graph, best);
    size = PredictSize(best, limits.vectorBits);
  }
  CheckMemoryOfMatrix(model, best.givenCost.entries, limits, size, findings);
  AddOrderFinding(model, size, findings);
}

}  // namespace kvx
