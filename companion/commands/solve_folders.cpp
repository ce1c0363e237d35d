// The second half of `kvx run`.
#include <algorithm>
#include <chrono>
#include <new>
#include <nlohmann/json.hpp>
#include <utility>

#include "audit/solved_model.h"
#include "base/release_vector.h"
#include "commands/audit_report.h"
#include "commands/folder_run.h"
#include "commands/load_model.h"
#include "commands/origin_file.h"
#include "commands/progress.h"
#include "commands/run_report.h"
#include "commands/solution_file.h"
#include "commands/solution_text.h"
#include "commands/watched_call.h"
#include "commands/write_shown.h"
#include "engine/result_folder.h"
#include "engine/same_stiffness.h"
#include "engine/solve_sparse.h"
#include "engine/solve_together.h"
#include "model/read_input_file.h"
#include "report/stop.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace kvx {

namespace fs = std::filesystem;
using korvex::Model;

namespace {

// The runs that are solved with one factorisation.
struct Group {
  std::vector<FolderRun*> runs;
  std::vector<std::vector<double>> loads, displacements;  // of each
  SolutionPlan plan;
  SolutionRecord record;
};

// Does `work`; what it throws ends the work on these runs. Returns whether it was done.
template <typename Work>
bool Try(const std::vector<FolderRun*>& runs, Work work) {
  const auto giveUp = [&](ExitStatus status, const std::string& reason) {
    for (FolderRun* run : runs) GiveUp(status, '"' + run->file + "\": " + reason, *run);
    return false;
  };
  try {
    work();
  } catch (const korvex::Stop& stop) {
    const bool isOutput = stop.kind == korvex::StopKind::ResultFile;
    return giveUp(isOutput ? ExitOutputFailed : ExitUnusableData, stop.text);
  } catch (const std::bad_alloc&) {
    return giveUp(ExitUnusableData, "there is not enough memory for it.");
  } catch (const fs::filesystem_error& error) {  // the folder has gone since the check
    return giveUp(ExitOutputFailed, error.code().message() + '.');
  }
  return true;
}

void Read(const FolderRun& run, Model& model) {
  korvex::ReadInputText(run.text, model);
  korvex::NumberEquations(model);
}

// Takes the folder for this run.
void Take(FolderRun& run) {
  fs::current_path(run.folder);
  BeginUnfinished("", NameResultFiles(), run.unfinished);
}

// Adds the run if it has the stiffness of `leader`, or is the first.
void AddToGroup(const RunCommand& command, FolderRun& run, Model& leader, Group& group) {
  Model other;
  Model& model = group.runs.empty() ? leader : other;
  Read(run, model);
  if (!group.runs.empty() && !HaveSameStiffness(leader, model)) return;
  if (!command.dryRun) Take(run);
  korvex::AssembleLoadVector(model);
  run.equations = static_cast<std::size_t>(model.NEQ);
  run.isWaiting = false;
  group.loads.push_back(std::move(model.LoadVector));
  group.runs.push_back(&run);
}

// All runs from the first that is waiting on.
void FormGroup(const RunCommand& command, FolderRuns& runs, Model& leader, Group& group) {
  for (FolderRun& run : runs) {
    if (!run.isWaiting) continue;
    if (!group.runs.empty() && run.meshKey != group.runs.front()->meshKey) continue;
    StopIfInterrupted();
    if (group.runs.empty()) leader = {};
    const auto add = [&] { AddToGroup(command, run, leader, group); };
    if (!Try({&run}, add)) EndUnfinished(run.unfinished);
  }
}

void EndAll(Group& group) {
  for (FolderRun* run : group.runs) EndUnfinished(run->unfinished);
}

// Fills the plan, also as far as it went where nothing fits. Returns whether it can be followed.
bool Plan(const RunCommand& command, const EngineSettings& settings, const Model& leader,
          Group& group) {
  Progress progress;
  BeginProgress("Predicting time and memory", progress);
  const EngineSettings watched = WatchCalls(settings, progress, [&] { EndAll(group); });
  const bool isPlanned = Try(group.runs, [&] {
    PlanSolution(
        leader, group.runs.size(), watched, [&](double share) { ShowShare(share, progress); },
        group.plan);
    if (command.dryRun) PredictRanks(leader, group.runs.size(), watched, group.plan);
  });
  const SolutionPlan told = CopyWithoutOrder(group.plan);
  for (FolderRun* run : group.runs) {
    run->loads = group.runs.size();
    run->fits = isPlanned;
    if (isPlanned || told.equations > 0) run->plan = told;
  }
  return isPlanned;
}

// Runs whose stale results cannot be removed leave the group.
void RemoveStale(Group& group) {
  for (std::size_t k = group.runs.size(); k-- > 0;) {
    FolderRun& run = *group.runs[k];
    const bool isRemoved = Try({&run}, [&] {
      fs::current_path(run.folder);
      run.removed = RemoveStaleResults("", run.text);
    });
    if (isRemoved) continue;
    EndUnfinished(run.unfinished);
    group.runs.erase(group.runs.begin() + static_cast<std::ptrdiff_t>(k));
    group.loads.erase(group.loads.begin() + static_cast<std::ptrdiff_t>(k));
  }
}

void Solve(const EngineSettings& settings, Model& leader, Group& group) {
  Progress progress;
  const std::size_t count = group.runs.size();
  const std::string what = count == 1 ? "Solving" : "Solving " + std::to_string(count) + " models";
  BeginProgress(SolvingText(what, group.plan), progress);
  const EngineSettings watched = WatchCalls(settings, progress, [&] { EndAll(group); });
  const auto begin = std::chrono::steady_clock::now();
  SolveTogether(
      leader, group.loads, watched, group.plan, [&](double share) { ShowShare(share, progress); },
      group.displacements, group.record);
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  for (std::size_t k = 0; k < count; ++k) {
    FolderRun* const run = group.runs[k];
    run->seconds = seconds;
    run->solution = SolutionOfLoad(group.record, k);
    for (const FolderRun* other : group.runs) run->together.push_back(other->place);
  }
}

void Write(const EngineSettings& settings, FolderRun& run, SolvedModel& solved) {
  const std::string solution = SolutionFileText(IdentifyModelFile(run.text), run.solution);
  WriteShown({"", run.text, run.seconds, solution, run.solution.threads, settings.memory},
             solved.model, solved.details, run.unfinished);
  EndUnfinished(run.unfinished);
  run.detailBlocks = solved.details.blocks;
  run.isSolved = true;
}

void Audit(const RunCommand& command, FolderRun& run, SolvedModel& solved) {
  AuditOptions options;
  options.threads = run.solution.threads;
  options.comparesFiles = false;  // they have just been written
  options.hasStresses = true;     // for them
  options.modelText = run.text;
  options.solution = run.solution;
  FindOrigin(ModelFileName, solved.model.Tables, options.deck);
  options.modelErrors = CountFindings(run.findings, Severity::Error);
  if (options.modelErrors > 0) options.firstError = NameFinding(run.findings.findings.front());
  AuditReport report;
  AuditModel(options, solved, report);
  const std::size_t errors = CountFindings(report.findings, Severity::Error);
  const std::size_t warnings = CountFindings(report.findings, Severity::Warning);
  if (errors > 0 || (command.strict && warnings > 0)) {
    run.status = std::max(run.status, ExitFindings);
  }
  if (command.form == OutputForm::Json) {
    run.said = RunJson(run, AuditJson(solved, report));
  } else if (command.form == OutputForm::Csv) {
    run.said = RunCsv(run, &report);
  } else {
    const TextStyle style = ChooseStyle(command.color);
    run.said = RunText(run, style) + AuditText(run.file, solved, report, style);
  }
}

// Writes the results and audits them.
void Finish(const RunCommand& command, const EngineSettings& settings, FolderRun& run,
            std::vector<double>& displacements) {
  SolvedModel solved;
  const auto write = [&] {
    Read(run, solved.model);
    solved.model.Displacements = std::move(displacements);
    fs::current_path(run.folder);
    Write(settings, run, solved);
  };
  const auto audit = [&] {
    solved.file = IdentifyModelFile(run.text);
    CompleteSolvedModel(solved);
    Audit(command, run, solved);
  };
  if (!Try({&run}, write) || !Try({&run}, audit)) EndUnfinished(run.unfinished);
  korvex::ReleaseVector(run.text);
}

// The model and the plan, with its order of the nodes, are freed before results are made.
void SolveGroup(const RunCommand& command, const EngineSettings& settings, Model& leader,
                Group& group) {
  RemoveStale(group);
  const bool isSolved =
      !group.runs.empty() && Try(group.runs, [&] { Solve(settings, leader, group); });
  leader = {};
  group.plan = {};
  for (std::size_t k = 0; k < group.runs.size(); ++k) {
    if (isSolved) {
      Finish(command, settings, *group.runs[k], group.displacements[k]);
      group.displacements[k] = {};
    }
    EndUnfinished(group.runs[k]->unfinished);
  }
}

// Plans the solution; and makes it, unless the run is dry or nothing fits. Returns the number of
// factorisations.
std::size_t WorkOnGroup(const RunCommand& command, const EngineSettings& settings, Model& leader,
                        Group& group) {
  if (!Plan(command, settings, leader, group)) {
    EndAll(group);
    return 0;
  }
  if (command.dryRun) return 0;
  SolveGroup(command, settings, leader, group);
  return 1;
}

void Describe(const RunCommand& command, FolderRun& run) {
  if (!run.said.empty()) return;
  if (command.form == OutputForm::Json) {
    run.said = RunJson(run, nullptr);
  } else if (command.form == OutputForm::Csv) {
    run.said = RunCsv(run, nullptr);
  } else {
    run.said = RunText(run, ChooseStyle(command.color));
  }
}

}  // namespace

std::size_t SolveFolders(const RunCommand& command, const EngineSettings& settings,
                         FolderRuns& runs, const std::function<void(const FolderRun&)>& report) {
  auto next = runs.begin();  // the first that was not reported
  const auto reportDone = [&] {
    for (; next != runs.end() && !next->isWaiting; ++next) {
      Describe(command, *next);
      report(*next);
    }
  };
  for (std::size_t factorisations = 0;;) {
    reportDone();
    Model leader;
    Group group;
    FormGroup(command, runs, leader, group);
    if (group.runs.empty()) {
      reportDone();
      return factorisations;
    }
    factorisations += WorkOnGroup(command, settings, leader, group);
  }
}

}  // namespace kvx
