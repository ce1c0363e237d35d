// kvx cases: load cases, combinations and envelopes of one structure.
#include <new>
#include <nlohmann/json.hpp>
#include <system_error>

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

// Solves, or says why that is not possible.
ExitStatus Solve(const CasesCommand& command, const fs::path& results, CaseSet& set,
                 std::vector<nlohmann::ordered_json>& audits, SolvedCases& solved) {
  const auto take = [&](std::size_t, const SolvedModel& model, const AuditReport& report) {
    if (command.json) audits.push_back(AuditJson(model, report));
  };
  try {
    SolveCases(results, set, take, solved);
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
  if (command.json) {
    text = CasesJson(set, nullptr, {}, {});
  } else {
    text = CaseFindingsText(set, ChooseStyle(command.color)) + "Not solved. Mend the errors";
    text += set.unreadable.empty() ? "; kvx cases --force would solve it as it is.\n" : ".\n";
  }
  const ExitStatus written = WriteOutput(text);
  return written == ExitFine ? ExitFindings : written;
}

}  // namespace

ExitStatus RunCases(const CasesCommand& command) {
  CatchInterrupts();
  CaseSet set;
  const ExitStatus opened = OpenCases(command, set);
  if (opened != ExitFine) return opened;
  std::size_t errors = CountFindings(set, Severity::Error);
  std::size_t warnings = CountFindings(set, Severity::Warning);
  if (errors > 0 && !command.force) return SayUnsolved(command, set);

  const fs::path results = ChooseResults(command, set);
  std::vector<nlohmann::ordered_json> audits;
  SolvedCases solved;
  const ExitStatus done = Solve(command, results, set, audits, solved);
  if (done != ExitFine) return done;
  const std::vector<std::string> others = ListOtherFolders(results, set);
  const TextStyle style = ChooseStyle(command.color);
  const ExitStatus written = WriteOutput(
      command.json ? CasesJson(set, &solved, audits, others)
                   : CaseFindingsText(set, style) + SolvedCasesText(set, solved, others, style));
  for (const SolvedCase& each : solved.cases) {
    errors += CountFindings(each.findings, Severity::Error);
    warnings += CountFindings(each.findings, Severity::Warning);
  }
  if (written != ExitFine) return written;
  return errors > 0 || (command.strict && warnings > 0) ? ExitFindings : ExitFine;
}

}  // namespace kvx
