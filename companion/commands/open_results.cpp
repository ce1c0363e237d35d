#include "commands/open_results.h"

#include <filesystem>
#include <new>

#include "commands/case_record.h"
#include "commands/check_model.h"
#include "commands/core_count.h"
#include "commands/origin_file.h"
#include "commands/progress.h"
#include "commands/solution_file.h"
#include "commands/speak.h"
#include "engine/engine_costs.h"
#include "finding/amount_text.h"
#include "model/read_input_file.h"
#include "platform/free_memory.h"
#include "renumber/node_graph.h"
#include "report/stop.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace {

// Looks for what would make the results meaningless.
void CheckBefore(OpenedResults& results) {
  Progress progress;
  BeginChecking(results.file.file, results.file.text.size(), progress);
  CheckReport report;
  CheckOptions options;
  options.asksMemory = false;
  CheckModel(results.file.text, options, report);
  results.errors = CountFindings(report.findings, Severity::Error);
  if (results.errors == 0) return;
  results.firstError = NameFinding(report.findings.findings.front());
}

void Obtain(OpenedResults& results) {
  korvex::Model tables;
  // The current folder is that of the file. Beside it there may be variants of other origin.
  const bool isSolved = std::filesystem::u8path(results.file.file).filename() == ModelFileName;
  if (isSolved) results.changedSources = DescribeChangedSources(".");
  CheckBefore(results);
  std::vector<double> displacements;
  korvex::ReadInputText(results.file.text, tables);
  results.reading =
      ReadDisplacementFile(ExactDisplacementFileName, IdentifyModelFile(results.file.text),
                           tables.Tables.NPOIN, displacements);
  FindOrigin(ModelFileName, tables.Tables, results.origin);
  if (isSolved) {
    results.solution =
        ReadSolutionFile(IdentifyModelFile(results.file.text), results.solutionProblem);
  }
  const bool fits = results.reading.fit == DisplacementFit::Fits;
  if (!fits) CheckSkylineFits(tables.Tables, results.reading);
  tables = {};
  if (fits) {
    CompleteFromDisplacements(results.file.text, std::move(displacements), results.solved);
  } else {
    SolveShown(results.file.text, results.solved);
  }
}

// Where the skyline does not fit.
const char* WayOut() {
  if (!HasSparseEngine()) return " Call kvx renumber where kvx check names a better order.";
  return " Call kvx run: its sparse engine takes less memory, and it leaves displacements.bin.";
}

}  // namespace

void CheckSkylineFits(const korvex::ModelTables& tables, const DisplacementReading& reading) {
  NodeGraph graph;
  BuildNodeGraph(tables, graph);
  EngineEstimate estimate;
  PredictSkyline(graph, 1, CountCores(), estimate);
  const std::uint64_t free = korvex::ReadFreeMemory();
  if (estimate.bytes <= free) return;
  throw korvex::Stop{korvex::StopKind::Notice,
                     reading.reason +
                         " Without it the model is solved by the skyline, which takes " +
                         GigabyteText(estimate.bytes) + " of memory, and there are " +
                         FreeText(free) + '.' + WayOut()};
}

void ExplainSolving(const std::string& who, const DisplacementReading& reading,
                    const std::optional<SolutionRecord>& solution) {
  const bool isSparse = solution && solution->engine == EngineChoice::Sparse;
  if (reading.fit == DisplacementFit::Fits) return;
  if (reading.fit == DisplacementFit::Missing && !isSparse) return;
  std::string text = reading.reason + " The model is solved anew";
  if (isSparse) {
    text += std::string(
                ", by the skyline: the result files are those of the sparse engine, and "
                "last digits may differ. Call kvx run: it leaves ") +
            ExactDisplacementFileName;
  }
  Complain(who, text + '.');
}

void SolveShown(const std::string& modelText, SolvedModel& solved) {
  Progress progress;
  BeginProgress("Solving", progress);
  SolveInMemory(
      modelText, [&](double share) { ShowShare(share, progress); }, solved, CountCores());
}

ExitStatus OpenResults(const std::string& who, const std::string& place, OpenedResults& results) {
  CatchInterrupts();
  std::string reason;
  const ExitStatus loaded = LoadModel(place, results.file, reason);
  if (loaded != ExitFine) {
    Complain(who, reason);
    return loaded;
  }
  try {
    Obtain(results);
  } catch (const korvex::Stop& stop) {
    reason = stop.text;
  } catch (const std::bad_alloc&) {
    reason = "there is not enough memory for it.";
    if (results.reading.fit != DisplacementFit::Fits) reason += WayOut();
  }
  if (reason.empty()) ExplainSolving(who, results.reading, results.solution);
  if (!results.changedSources.empty()) {
    Complain(who, results.changedSources + ' ' + ChangedSourcesRemedy);
  }
  if (results.errors > 0) {
    Complain(who, "the model has errors, so that its results may mean nothing: " +
                      results.firstError + " See kvx check.");
  }
  if (reason.empty()) return ExitFine;
  Complain(who, '"' + results.file.file + "\": " + reason);
  return ExitUnusableData;
}

}  // namespace kvx
