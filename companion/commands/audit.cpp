// kvx audit: tells whether results can be trusted.
#include <new>
#include <nlohmann/json.hpp>
#include <utility>

#include "commands/audit_report.h"
#include "commands/audit_table.h"
#include "commands/commands.h"
#include "commands/core_count.h"
#include "commands/open_results.h"
#include "commands/result_table.h"
#include "report/stop.h"

namespace kvx {

namespace {

constexpr const char* Name = "kvx audit";

ExitStatus Refuse(const OpenedResults& results, const std::string& reason) {
  Complain(Name, '"' + results.file.file + "\": " + reason);
  return ExitUnusableData;
}

// Fills the report, or says why that is not possible.
ExitStatus Audit(const AuditCommand& command, OpenedResults& results, AuditReport& report) {
  const korvex::Model& model = results.solved.model;
  if (model.Shell4Elements.empty() && model.Shell3Elements.empty() && model.BeamElements.empty()) {
    return Refuse(results, "the model has no elements, so that there are no results.");
  }
  AuditOptions options;
  options.threads = CountCores();
  options.yield = command.yield;
  options.modelText = results.file.text;
  options.comparesFiles = IsModelOfFolder(results.file);
  if (options.comparesFiles) options.reading = results.reading;
  options.origin = results.reading.fit == DisplacementFit::Fits
                       ? std::string("displacements of ") + ExactDisplacementFileName
                       : "solved in memory";
  const bool hasFile = results.reading.fit == DisplacementFit::Fits;
  if (options.comparesFiles && hasFile) options.solution = results.solution;
  options.hasSparseFiles =
      !hasFile && results.solution && results.solution->engine == EngineChoice::Sparse;
  // Where displacements.bin is of another model, solution.json is, too: that is told already.
  if (hasFile || results.reading.fit == DisplacementFit::Missing) {
    options.solutionProblem = results.solutionProblem;
  }
  options.deck = std::move(results.origin);
  options.changedSources = results.changedSources;
  options.modelErrors = results.errors;
  options.firstError = results.firstError;
  try {
    AuditModel(options, results.solved, report);
  } catch (const korvex::Stop& stop) {
    return Refuse(results, stop.text);
  } catch (const std::bad_alloc&) {
    return Refuse(results, "there is not enough memory to audit it.");
  }
  return ExitFine;
}

std::string ReportAs(const AuditCommand& command, const OpenedResults& results,
                     const AuditReport& report) {
  if (command.form == OutputForm::Json) return JsonLine(AuditJson(results.solved, report));
  if (command.form == OutputForm::Text) {
    return AuditText(results.file.file, results.solved, report, ChooseStyle(command.color));
  }
  ResultTable table = MakeAuditTable("model");
  AddAuditRow(results.file.file, &report, VerdictText(report), table);
  return TableCsv(table);
}

}  // namespace

ExitStatus RunAudit(const AuditCommand& command) {
  OpenedResults results;
  const ExitStatus opened = OpenResults(Name, command.place, results);
  if (opened != ExitFine) return opened;
  AuditReport report;
  const ExitStatus audited = Audit(command, results, report);
  if (audited != ExitFine) return audited;

  const ExitStatus written = WriteOutput(ReportAs(command, results, report));
  if (written != ExitFine) return written;
  const bool isBad = CountFindings(report.findings, Severity::Error) > 0 ||
                     (command.strict && CountFindings(report.findings, Severity::Warning) > 0);
  return isBad ? ExitFindings : ExitFine;
}

}  // namespace kvx
