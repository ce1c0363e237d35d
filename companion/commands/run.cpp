// kvx run: checks models, solves them, writes their results and audits them.
#include <algorithm>

#include "commands/commands.h"
#include "commands/folder_run.h"
#include "commands/progress.h"
#include "commands/run_report.h"
#include "commands/speak.h"

namespace kvx {

ExitStatus RunRun(const RunCommand& command) {
  CatchInterrupts();
  FolderRuns runs;
  CheckFolders(command, runs);
  ExitStatus status = ExitFine;
  bool isFirst = true;
  const std::size_t factorisations = SolveFolders(command, runs, [&](const FolderRun& run) {
    const bool needsLine = !isFirst && !command.json && !run.said.empty();
    isFirst = isFirst && run.said.empty();
    status = std::max({status, run.status, WriteOutput((needsLine ? "\n" : "") + run.said)});
  });
  if (command.json) return status;
  const std::string next = NextText(runs, factorisations, ChooseStyle(command.color));
  return std::max(status, WriteOutput(next));
}

}  // namespace kvx
