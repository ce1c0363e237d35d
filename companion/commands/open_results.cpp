#include "commands/open_results.h"

#include <filesystem>
#include <new>

#include "commands/case_record.h"
#include "commands/check_model.h"
#include "commands/core_count.h"
#include "commands/origin_file.h"
#include "commands/progress.h"
#include "commands/speak.h"
#include "model/read_input_file.h"
#include "report/stop.h"

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
  tables = {};
  if (results.reading.fit == DisplacementFit::Fits) {
    CompleteFromDisplacements(results.file.text, std::move(displacements), results.solved);
  } else {
    SolveShown(results.file.text, results.solved);
  }
}

}  // namespace

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
  }
  const DisplacementFit fit = results.reading.fit;
  if (fit != DisplacementFit::Fits && fit != DisplacementFit::Missing) {
    Complain(who, results.reading.reason + " The model is solved anew.");
  }
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
