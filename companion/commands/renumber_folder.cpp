#include "commands/renumber_folder.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "audit/displacement_file.h"
#include "audit/solved_model.h"
#include "audit/whole_file.h"
#include "base/dof_counts.h"
#include "commands/core_count.h"
#include "commands/folder_cases.h"
#include "commands/hash_text.h"
#include "commands/move_case_loads.h"
#include "commands/origin_file.h"
#include "commands/regular_file.h"
#include "commands/solution_file.h"
#include "commands/write_shown.h"
#include "engine/result_folder.h"
#include "mesh/scan_number.h"
#include "model/read_input_file.h"
#include "platform/calc_log_file.h"
#include "report/stop.h"
#include "system/profile.h"
#include "tables/model_origin.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

constexpr const char* CaseResults = "results";  // as kvx cases names them by itself

// The text of import.json where it belongs to the model before; else empty.
std::string FindOriginText(const NumberedModel& model, RenumberReport& report) {
  std::string text;
  if (!ReadRegularFile(OriginFileName, text)) return "";
  ModelOrigin origin;
  std::string reason;
  if (ReadOrigin(text, origin, reason) && FitsModel(origin, model.tables)) return text;
  report.notes.push_back(std::string(OriginFileName) +
                         " does not belong to this state of the model, and stays as it is.");
  return "";
}

// A file that was as the import has written it, and gets new numbers alone, is still one that
// nobody has changed: a later import may replace it. text: of import.json. files: to be written.
std::string ChangeHashes(const std::string& text, const std::vector<MovedFile>& files) {
  std::vector<ImportedFile> imported;
  std::string reason;
  if (!ReadImportedFiles(text, imported, reason)) return text;
  for (ImportedFile& each : imported) {
    const auto isOf = [&](const MovedFile& file) { return file.shown == each.name; };
    const auto moved = std::find_if(files.begin(), files.end(), isOf);
    std::string before;
    if (moved == files.end() || !ReadRegularFile(moved->name, before)) continue;
    if (each.hash == HashText(HashBytes(before))) each.hash = HashText(HashBytes(moved->text));
  }
  return ChangeImportedHashes(text, imported);
}

// Whether the folder's displacements.bin says that it is of the model before.
bool HasResults(const NumberedModel& model) {
  ModelFileId file;
  return ReadModelOfDisplacements(ExactDisplacementFileName, file) == DisplacementFit::Fits &&
         file == IdentifyModelFile(model.file.text);
}

// The displacements of the model before; empty where there are none that fit it.
std::vector<double> ReadDisplacements(const NumberedModel& model) {
  std::vector<double> displacements;
  ReadDisplacementFile(ExactDisplacementFileName, IdentifyModelFile(model.file.text),
                       static_cast<std::int32_t>(model.tables.Nodes.size()), displacements);
  return displacements;
}

std::vector<double> MoveDisplacements(const std::vector<std::int32_t>& order,
                                      const std::vector<double>& before) {
  constexpr std::ptrdiff_t Dofs = korvex::DofsPerNode;
  std::vector<double> moved(before.size());
  for (std::size_t row = 0; row < order.size(); ++row) {
    std::copy_n(before.begin() + Dofs * order[row], Dofs,
                moved.begin() + Dofs * static_cast<std::ptrdiff_t>(row));
  }
  return moved;
}

void PlanResults(const Renumbering& renumbering, const NumberedModel& model,
                 RenumberReport& report) {
  const std::vector<std::string> there = ListResultFiles("");
  if (renumbering.isUndo && !ReadDisplacements(model).empty()) {
    const bool hasSolution = ReadSolutionFile(IdentifyModelFile(model.file.text)).has_value();
    for (const FileToMake& file : NameResultFiles()) {
      if (hasSolution || file.name != SolutionFileName) report.written.push_back(file.shown);
    }
  } else if (HasResults(model)) {
    report.removed = there;
  } else {
    report.stale = there;
  }
  std::error_code error;
  if (fs::exists(CaseFileName, error) && fs::is_directory(CaseResults, error)) {
    report.notes.emplace_back(
        "The results of load cases have the numbers before: kvx cases makes them anew.");
  }
}

// Begins with the files; those of results come first, the model is the last one.
void Begin(const std::vector<MovedFile>& files, bool withResults, bool withMap,
           UnfinishedFolder& unfinished) {
  std::vector<FileToMake> all;
  if (withResults) all = NameResultFiles();
  if (withMap) all.push_back({NumberMapFileName, NumberMapFileName});
  for (const MovedFile& file : files) all.push_back({file.name, file.shown});
  BeginUnfinished("", all, unfinished);
}

void Write(const fs::path& name, const std::string& text, const UnfinishedFolder& unfinished) {
  const fs::path place = unfinished.path / name;
  std::error_code error;
  fs::create_directories(place.parent_path(), error);
  // Relative to the current folder: on Windows not every folder has a name in the system's code
  // page.
  WriteWholeFile(unfinished.prefix + name.generic_string(),
                 [&](std::ostream& stream) { stream << text; });
}

// The time of the solution that the displacements come from; 0 where the log does not tell it.
double ReadLoggedSeconds() {
  constexpr std::string_view Before = "Solution time:";  // WriteSolutionTime of run/calc_log.cpp
  std::string log;
  double seconds = 0.0;
  if (!ReadRegularFile(korvex::CalcLogFile(), log)) return seconds;
  const std::size_t found = log.rfind(Before);
  if (found == std::string::npos) return seconds;
  const std::string_view rest = std::string_view(log).substr(found + Before.size());
  return ScanDouble(rest.substr(0, rest.find(' ')), seconds) ? seconds : 0.0;
}

// As a run leaves them. before: the model before, whose solution it is. displacements: of the model
// with the new numbers.
void WriteResultsOf(const NumberedModel& before, const std::string& modelText,
                    std::vector<double> displacements, UnfinishedFolder& unfinished) {
  korvex::Model model;
  korvex::ReadInputText(modelText, model);
  korvex::NumberEquations(model);
  model.Displacements = std::move(displacements);
  const auto solution = ReadSolutionFile(IdentifyModelFile(before.file.text));
  const std::string text =
      solution ? SolutionFileText(IdentifyModelFile(modelText), *solution) : std::string();
  DetailPeaks unused;
  WriteShown({"", modelText, ReadLoggedSeconds(), text, CountCores()}, model, unused, unfinished);
}

void RemoveMap() {
  std::error_code error;
  fs::remove(NumberMapFileName, error);
  if (!error) return;
  throw korvex::Stop{korvex::StopKind::ResultFile,
                     std::string("the model has its first numbers back, but ") + NumberMapFileName +
                         " cannot be removed: " + error.message() + ". Remove it."};
}

}  // namespace

void PlanFiles(const Renumbering& renumbering, NumberedModel& model, std::vector<MovedFile>& files,
               RenumberReport& report) {
  PlanResults(renumbering, model, report);
  const std::string origin = FindOriginText(model, report);
  MovedFile moved = MoveModel(renumbering.order, model);
  MoveCaseLoads(InvertOrder(renumbering.order), files);
  files.push_back(std::move(moved));
  if (!origin.empty()) {
    const std::string text =
        MoveOriginNodes(origin, renumbering.order, HashStructure(model.tables));
    files.insert(files.end() - 1, {OriginFileName, OriginFileName, ChangeHashes(text, files)});
  }
  for (const MovedFile& file : files) report.moved.push_back(file.shown);
  report.moved.pop_back();  // the model itself
  report.notes.insert(report.notes.end(), model.notes.begin(), model.notes.end());
}

void WriteFiles(const Renumbering& renumbering, const NumberedModel& model,
                const std::vector<MovedFile>& files, const RenumberReport& report) {
  const bool withResults = !report.written.empty();
  const std::string& text = files.back().text;
  UnfinishedFolder unfinished;
  Begin(files, withResults, !renumbering.isUndo, unfinished);
  for (const MovedFile& file : files) Write(file.name, file.text, unfinished);
  if (!renumbering.isUndo) {
    NumberMap map = renumbering.map;
    map.nodes = HashNodes(model.tables);
    map.after.id = IdentifyModelFile(text);
    Write(NumberMapFileName, WriteNumberMap(map), unfinished);
  }
  if (withResults) {
    WriteResultsOf(model, text, MoveDisplacements(renumbering.order, ReadDisplacements(model)),
                   unfinished);
  } else {
    MoveFiles(unfinished);
  }
  if (renumbering.isUndo) RemoveMap();
  if (!report.removed.empty()) RemoveStaleResults("", text);
}

}  // namespace kvx
