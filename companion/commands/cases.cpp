// kvx cases: load cases, combinations and envelopes of one structure.
#include <algorithm>
#include <new>
#include <nlohmann/json.hpp>
#include <system_error>

#include "commands/audit_table.h"
#include "commands/cases_report.h"
#include "commands/commands.h"
#include "commands/progress.h"
#include "commands/speak.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

constexpr const char* Name = "kvx cases";

fs::path ChooseResults(const CasesCommand& command, const CaseSet& set) {
  std::error_code error;
  return command.output.empty()
             ? set.folder / "results"
             : fs::absolute(fs::u8path(command.output), error).lexically_normal();
}

// What is kept of the audits, for the form that was asked for.
struct CaseAudits {
  std::vector<nlohmann::ordered_json> json;
  ResultTable table = MakeAuditTable("case");
};

// Solves or, in a dry run, plans; or says why that is not possible.
ExitStatus Solve(const CasesCommand& command, const EngineSettings& settings, CaseSet& set,
                 CaseAudits& audits, SolvedCases& solved) {
  const auto take = [&](std::size_t row, const SolvedModel& model, const AuditReport& report) {
    if (command.form == OutputForm::Json) audits.json.push_back(AuditJson(model, report));
    if (command.form != OutputForm::Csv) return;
    AddAuditRow(set.sets[row].name, &report, VerdictText(report), audits.table);
  };
  try {
    if (command.dryRun) {
      PlanCases(settings, set, solved);
    } else {
      SolveCases(ChooseResults(command, set), settings, set, take, solved);
    }
  } catch (const korvex::Stop& stop) {
    Complain(Name, '"' + set.file + "\": " + stop.text);
    return stop.kind == korvex::StopKind::ResultFile ? ExitOutputFailed : ExitUnusableData;
  } catch (const std::bad_alloc&) {
    Complain(Name, "there is not enough memory for it.");
    return ExitUnusableData;
  }
  return ExitFine;
}

ExitStatus SayUnsolved(const CasesCommand& command, const CaseSet& set) {
  std::string text;
  if (command.form == OutputForm::Json) {
    text = CasesJson(set, {}, {}, {});
  } else {
    text = CaseFindingsText(set, ChooseStyle(command.color)) + "Not solved. Mend the errors";
    text += set.unreadable.empty() ? "; kvx cases --force tries it as it is.\n" : ".\n";
  }
  if (command.form == OutputForm::Csv) {
    Complain(Name, text);  // what is no table does not belong into one
    return ExitFindings;
  }
  const ExitStatus written = WriteOutput(text);
  return written == ExitFine ? ExitFindings : written;
}

// What a dry run has found. status: of the plan.
ExitStatus SayForecast(const CasesCommand& command, const CaseSet& set, const SolvedCases& solved,
                       ExitStatus status) {
  const TextStyle style = ChooseStyle(command.color);
  const std::string text = command.form == OutputForm::Json
                               ? CasesJson(set, solved, {}, {})
                               : CaseFindingsText(set, style) + ForecastText(set, solved, style);
  return std::max(status, WriteOutput(text));
}

ExitStatus SaySolved(const CasesCommand& command, const CaseSet& set, const SolvedCases& solved,
                     const CaseAudits& audits) {
  const std::vector<std::string> others = ListOtherFolders(ChooseResults(command, set), set);
  const TextStyle style = ChooseStyle(command.color);
  if (command.form == OutputForm::Json) {
    return WriteOutput(CasesJson(set, solved, audits.json, others));
  }
  if (command.form == OutputForm::Csv) return WriteOutput(TableCsv(audits.table));
  return WriteOutput(CaseFindingsText(set, style) + SolvedCasesText(set, solved, others, style));
}

}  // namespace

ExitStatus RunCases(const CasesCommand& command) {
  CatchInterrupts();
  const EngineSettings settings = MakeEngineSettings(command.engine);
  const ExitStatus prepared = CheckOutOfCore(Name, settings);
  if (prepared != ExitFine) return prepared;
  CaseSet set;
  const ExitStatus opened = OpenCases(command, set);
  if (opened != ExitFine) return opened;
  std::size_t errors = CountFindings(set, Severity::Error);
  std::size_t warnings = CountFindings(set, Severity::Warning);
  if (errors > 0 && !command.force) return SayUnsolved(command, set);

  CaseAudits audits;
  SolvedCases solved;
  const ExitStatus done = Solve(command, settings, set, audits, solved);
  if (command.dryRun) {
    const bool isBad = errors > 0 || (command.strict && warnings > 0);
    return std::max(SayForecast(command, set, solved, done), isBad ? ExitFindings : ExitFine);
  }
  if (done != ExitFine) {
    solved.cases.clear();  // of some of them there may be results
    if (command.form == OutputForm::Json) WriteOutput(CasesJson(set, solved, {}, {}));
    return done;
  }
  const ExitStatus written = SaySolved(command, set, solved, audits);
  for (const SolvedCase& each : solved.cases) {
    errors += CountFindings(each.findings, Severity::Error);
    warnings += CountFindings(each.findings, Severity::Warning);
  }
  if (written != ExitFine) return written;
  return errors > 0 || (command.strict && warnings > 0) ? ExitFindings : ExitFine;
}

}  // namespace kvx
