// kvx check: names the mistakes of a model.
#include <new>

#include "commands/check_model.h"
#include "commands/check_report.h"
#include "commands/commands.h"
#include "commands/load_model.h"
#include "commands/progress.h"
#include "report/stop.h"

namespace kvx {

namespace {

constexpr const char* Name = "kvx check";

// Fills the report, or says why that is not possible.
ExitStatus CheckLoaded(const LoadedModel& model, const CheckCommand& command, CheckReport& report) {
  CheckOptions options;
  options.tolerance = command.tolerance;
  options.deep = command.deep;
  std::string reason;
  Progress progress;
  BeginChecking(model.file, model.text.size(), progress);
  if (command.deep) ShowBegin({}, progress);
  try {
    CheckModel(model.text, options, report);
    AddOrigin(report);
    PointToCases(model, report.findings);
    // Beside the model of the folder there may be others, which the import did not make.
    report.hasForeignOrigin = report.hasForeignOrigin && IsModelOfFolder(model);
  } catch (const korvex::Stop& stop) {
    reason = stop.text;
  } catch (const std::bad_alloc&) {
    reason = "there is not enough memory to check it.";
  }
  if (reason.empty()) return ExitFine;
  Complain(Name, '"' + model.file + "\": " + reason);
  return ExitUnusableData;
}

}  // namespace

ExitStatus RunCheck(const CheckCommand& command) {
  LoadedModel model;
  std::string complaint;
  const ExitStatus loaded = LoadModel(command.place, model, complaint);
  if (loaded != ExitFine) {
    Complain(Name, complaint);
    return loaded;
  }
  CheckReport report;
  const ExitStatus checked = CheckLoaded(model, command, report);
  if (checked != ExitFine) return checked;

  const ExitStatus written =
      WriteOutput(command.json ? ReportJson(report)
                               : ReportText(model.file, report, ChooseStyle(command.color)));
  if (written != ExitFine) return written;
  const bool isBad = CountFindings(report.findings, Severity::Error) > 0 ||
                     (command.strict && CountFindings(report.findings, Severity::Warning) > 0);
  return isBad ? ExitFindings : ExitFine;
}

}  // namespace kvx
