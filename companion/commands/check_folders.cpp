// The first half of `kvx run`: all models are loaded and checked before the first is solved.
#include <algorithm>
#include <new>

#include "audit/solved_model.h"
#include "commands/check_model.h"
#include "commands/check_report.h"
#include "commands/folder_run.h"
#include "commands/load_model.h"
#include "commands/progress.h"
#include "commands/speak.h"
#include "engine/result_folder.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

constexpr const char* Name = "kvx run";

template <typename Item, typename Allocator>
std::uint64_t HashTable(const std::vector<Item, Allocator>& table) {
  return HashBytes({reinterpret_cast<const char*>(table.data()), table.size() * sizeof(Item)});
}

// Which models are worth to be compared.
std::uint64_t MakeMeshKey(const korvex::ModelTables& tables) {
  std::uint64_t key = HashTable(tables.Nodes);
  for (const std::vector<std::int32_t>* nodes :
       {&tables.Shell4Nodes, &tables.Shell3Nodes, &tables.BeamNodes}) {
    constexpr std::uint64_t Odd = 0x9E3779B97F4A7C15U;  // tells the tables apart
    key = key * Odd + HashTable(*nodes);
  }
  return key;
}

// Loads the model; the current folder is then that of the model.
bool Load(FolderRun& run) {
  LoadedModel model;
  std::string complaint;
  const ExitStatus loaded = LoadModel(run.place, model, complaint);
  if (loaded != ExitFine) {
    GiveUp(loaded, complaint, run);
    return false;
  }
  const bool isOfFolder = IsModelOfFolder(model);
  run.file = std::move(model.file);
  run.text = std::move(model.text);
  std::error_code error;
  const fs::path folder = fs::current_path(error);
  if (error || !isOfFolder) {
    GiveUp(ExitUsage,
           '"' + run.file + "\" cannot be solved where it is: results belong to the file " +
               ModelFileName + " of their folder. Give it this name in a folder of its own.",
           run);
    return false;
  }
  run.folder = folder;
  return true;
}

void Check(const RunCommand& command, FolderRun& run) {
  Progress progress;
  BeginChecking(run.file, run.text.size(), progress);
  CheckReport report;
  CheckOptions options;
  options.asksMemory = false;
  CheckModel(run.text, options, report);
  AddOrigin(report);
  PointToCases({run.file, ""}, report.findings);
  run.meshKey = MakeMeshKey(report.model.tables);
  if (command.form == OutputForm::Json) run.checkJson = ReportJson(report);
  run.findings = std::move(report.findings);
  run.isChecked = true;
}

void CheckLoaded(const RunCommand& command, FolderRun& run) {
  try {
    Check(command, run);
  } catch (const korvex::Stop& stop) {
    return GiveUp(ExitUnusableData, '"' + run.file + "\": " + stop.text, run);
  } catch (const std::bad_alloc&) {
    return GiveUp(ExitUnusableData, '"' + run.file + "\": there is not enough memory to check it.",
                  run);
  }
  const std::size_t errors = CountFindings(run.findings, Severity::Error);
  const std::size_t warnings = CountFindings(run.findings, Severity::Warning);
  if (errors > 0 || (command.strict && warnings > 0)) run.status = ExitFindings;
  run.isWaiting = errors == 0 || command.force;
  run.hasStale = !run.isWaiting && HasStaleResults("", run.text);
}

}  // namespace

void GiveUp(ExitStatus status, const std::string& complaint, FolderRun& run) {
  Complain(Name, complaint);
  run.complaint = complaint;
  run.status = std::max(run.status, status);
  run.isWaiting = false;
}

void CheckFolders(const RunCommand& command, FolderRuns& runs) {
  std::error_code error;
  const fs::path start = fs::current_path(error);
  for (const std::string& place : command.places) {
    StopIfInterrupted();
    // Places are relative to where the user is; each model loaded has changed the current folder.
    if (!start.empty()) fs::current_path(start, error);
    FolderRun& run = runs.emplace_back();
    run.place = place;
    run.isDry = command.dryRun;
    if (!Load(run)) continue;
    const auto isSame = [&](const FolderRun& other) {
      return &other != &run && !other.folder.empty() &&
             fs::equivalent(other.folder / ModelFileName, run.folder / ModelFileName, error);
    };
    const auto same = std::find_if(runs.begin(), runs.end(), isSame);
    if (same != runs.end()) {
      Complain(Name, '"' + place + "\" and \"" + same->place +
                         "\" are the same folder: it is solved once.");
      runs.pop_back();
      continue;
    }
    CheckLoaded(command, run);
  }
}

}  // namespace kvx
