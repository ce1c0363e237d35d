// kvx run: checks models, solves them, writes their results and audits them.
#include <algorithm>

#include "commands/audit_table.h"
#include "commands/commands.h"
#include "commands/folder_run.h"
#include "commands/progress.h"
#include "commands/run_report.h"
#include "commands/speak.h"

namespace kvx {

ExitStatus RunRun(const RunCommand& command) {
  CatchInterrupts();
  const EngineSettings settings = MakeEngineSettings(command.engine);
  const ExitStatus prepared = CheckOutOfCore("kvx run", settings);
  if (prepared != ExitFine) return prepared;
  FolderRuns runs;
  CheckFolders(command, runs);
  const bool isText = command.form == OutputForm::Text;
  ExitStatus status = ExitFine;
  if (command.form == OutputForm::Csv) status = WriteOutput(CsvHead(MakeAuditTable("model")));
  bool isFirst = true;
  const std::size_t factorisations =
      SolveFolders(command, settings, runs, [&](const FolderRun& run) {
        const bool needsLine = !isFirst && isText && !run.said.empty();
        isFirst = isFirst && run.said.empty();
        status = std::max({status, run.status, WriteOutput((needsLine ? "\n" : "") + run.said)});
      });
  if (!isText || command.dryRun) return status;
  const std::string next = NextText(runs, factorisations, ChooseStyle(command.color));
  return std::max(status, WriteOutput(next));
}

}  // namespace kvx
