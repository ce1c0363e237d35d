// kvx import: brings a mesh of another program in as a model file.
#include <chrono>
#include <new>

#include "commands/commands.h"
#include "commands/import_job.h"
#include "commands/progress.h"
#include "finding/text_layout.h"
#include "report/stop.h"

namespace kvx {

namespace {

constexpr const char* Name = "kvx import";

// Does the work, or says why that is not possible. what: for who waits; empty: it takes no time.
ExitStatus Attempt(const std::string& what, ImportJob& job, void (*work)(ImportJob&)) {
  Progress progress;
  BeginProgress(what, progress);
  ShowBegin(job.begin, progress);
  std::string complaint;
  ExitStatus status = ExitUnusableData;
  try {
    work(job);
    return ExitFine;
  } catch (const ImportRefusal& refusal) {
    status = refusal.status;
    complaint = refusal.complaint;
  } catch (const korvex::Stop& stop) {
    if (stop.kind == korvex::StopKind::ResultFile) status = ExitOutputFailed;
    complaint = stop.text;
  } catch (const std::bad_alloc&) {
    complaint = '"' + job.command.deck + "\": there is not enough memory to import it.";
  }
  EndProgress(progress);
  Complain(Name, complaint);
  return status;
}

// Stages in their order. Behind some of them the report tells whether there is a model.
struct ImportStage {
  const char* what;
  void (*work)(ImportJob&);
  bool decides;
};

constexpr ImportStage Stages[] = {
    {"Reading", ReadDeck, false},
    // Before the map: a force on the nodes of a group must not act twice at one place.
    {"Merging nodes of", MergeImported, false},
    {"Applying the map to", ApplyMap, false},
    {"Choosing the load case of", KeepCase, false},
    {"Completing", CompleteImport, true},
    {"Making the tables of", BuildImported, true},
    {"Ordering the nodes of", OrderImported, false},
    {"Writing the model of", WriteImported, false},
    {"Checking the model of", CheckImported, false},
};

// Whether the import ends here, and nothing is written.
bool Ends(ImportJob& job) {
  const ImportReport& report = job.outcome.report;
  if (CountFate(report, Fate::Refused) > 0) {
    job.outcome.end = ImportEnd::Refused;
    return true;
  }
  job.outcome.end = ImportEnd::Strict;
  return job.command.strict && job.isBuilt &&
         CountFate(report, Fate::Lost) + CountFate(report, Fate::Limited) > 0;
}

ExitStatus StatusOf(const ImportJob& job) {
  const ImportOutcome& outcome = job.outcome;
  if (outcome.end == ImportEnd::Refused) return ExitUnusableData;
  if (outcome.end == ImportEnd::Strict) return ExitFindings;
  const bool isBad = CountFindings(outcome, Severity::Error) > 0 ||
                     (job.command.strict && CountFindings(outcome, Severity::Warning) > 0);
  return isBad ? ExitFindings : ExitFine;
}

ExitStatus ImportDeck(ImportJob& job) {
  for (const ImportStage& stage : Stages) {
    const ExitStatus status =
        Attempt(std::string(stage.what) + ' ' + job.command.deck, job, stage.work);
    if (status != ExitFine) return status;
    if (stage.decides && Ends(job)) break;
  }
  const ExitStatus status = StatusOf(job);
  const ExitStatus written =
      WriteOutput(job.command.json ? ImportJson(job.outcome, status)
                                   : ImportText(job.outcome, ChooseStyle(job.command.color)));
  return written == ExitFine ? status : written;
}

ExitStatus MakeMapTemplate(ImportJob& job) {
  for (void (*work)(ImportJob&) : {ReadDeck, WriteTemplate}) {
    const ExitStatus status = Attempt("Reading " + job.command.deck, job, work);
    if (status != ExitFine) return status;
  }
  return WriteOutput(job.said);
}

}  // namespace

ExitStatus RunImport(const ImportCommand& command) {
  CatchInterrupts();
  ImportJob job;
  job.command = command;
  return command.mapTemplate.empty() ? ImportDeck(job) : MakeMapTemplate(job);
}

}  // namespace kvx
