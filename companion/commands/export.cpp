// kvx export: models and their results as files for other programs.
#include <algorithm>
#include <filesystem>

#include "commands/case_place.h"
#include "commands/commands.h"
#include "commands/export_cases.h"
#include "commands/export_model.h"
#include "commands/progress.h"
#include "commands/speak.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

// Why the options make no sense; empty: they do.
std::string RefuseOptions(const ExportCommand& command) {
  if (!command.vtu && !command.csv) {
    return "which files? --vtu for ParaView, --csv for spreadsheets, or both.";
  }
  if (!command.vtu && command.shared) return "--shared is for --vtu.";
  if (!command.vtu && command.details) return "--details is for --vtu.";
  if (command.places.size() > 1 && !command.output.empty()) {
    return "-o is for one place: the files of several have the same names.";
  }
  if (!command.results.empty() &&
      std::none_of(command.places.begin(), command.places.end(), IsCaseFile)) {
    return ResultsWithoutCases;
  }
  return "";
}

ExitStatus ExportPlace(const ExportCommand& command, const std::string& place) {
  if (IsCaseFile(place)) return ExportCases(command, place);
  ModelExport job;
  job.place = place;
  if (!command.output.empty()) {
    std::error_code error;
    job.folder = fs::absolute(fs::u8path(command.output), error).lexically_normal();
    job.shown = command.output + (command.output.back() == '/' ? "" : "/");
  }
  return ExportModel(command, job, {});
}

}  // namespace

ExitStatus RunExport(const ExportCommand& command) {
  const std::string wrong = RefuseOptions(command);
  if (!wrong.empty()) {
    Complain(ExportName, wrong);
    return ExitUsage;
  }
  CatchInterrupts();
  ExitStatus gravest = ExitFine;
  for (const std::string& place : command.places) {
    gravest = std::max(gravest, ExportPlace(command, place));
  }
  return gravest;
}

}  // namespace kvx
