#include "commands/case_set.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <system_error>
#include <utility>

#include "cases/load_tables.h"
#include "cases/self_weight.h"
#include "commands/check_loads_file.h"
#include "commands/check_model.h"
#include "commands/check_report.h"
#include "commands/folder_cases.h"
#include "commands/origin_file.h"
#include "commands/origin_words.h"
#include "commands/progress.h"
#include "commands/speak.h"
#include "deck/read_tables.h"
#include "model/read_input_file.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

constexpr const char* Name = "kvx cases";

// What ends the opening: said already, or to be said.
struct Refusal {
  ExitStatus status;
  std::string complaint;
};

// Loads a file; the current folder stays as it is. Returns its row in set.sources.
std::size_t Load(const fs::path& place, LoadedModel& file, CaseSet& set) {
  std::error_code error;
  const fs::path start = fs::current_path(error);
  std::string complaint;
  const ExitStatus status = LoadModel(place.u8string(), file, complaint);
  if (!start.empty()) fs::current_path(start, error);
  if (status != ExitFine) throw Refusal{status, complaint};
  return AddSource({fs::absolute(fs::u8path(file.file), error), IdentifyModelFile(file.text)},
                   set.sources);
}

[[noreturn]] void StopInFile(const std::string& file, const std::string& text) {
  throw Refusal{ExitUnusableData, '"' + file + "\": " + text};
}

// Does `work`; what stops it is about `file`.
template <typename Work>
void InFile(const std::string& file, const Work& work) {
  try {
    work();
  } catch (const korvex::Stop& stop) {
    StopInFile(file, stop.text);
  }
}

// The same for a file that the case file names; where: where that is, "line 7: ".
std::size_t LoadNamed(const fs::path& place, const std::string& where, LoadedModel& file,
                      CaseSet& set) {
  try {
    return Load(place, file, set);
  } catch (Refusal& reason) {
    reason.complaint = '"' + set.file + "\": " + where + reason.complaint;
    throw;
  }
}

// "line 7: case "ballast": "
std::string OwnerText(std::size_t line, const LoadCase& loadCase) {
  return "line " + std::to_string(line) + ": case \"" + loadCase.name + "\": ";
}

fs::path ReadFile(const CasesCommand& command, CaseSet& set, CaseFile& cases) {
  std::error_code error;
  fs::path place = fs::u8path(command.file);
  if (fs::is_directory(place, error)) place /= CaseFileName;
  LoadedModel file;
  Load(place, file, set);
  set.file = file.file;
  set.folder = fs::absolute(place, error).parent_path();
  if (error) throw Refusal{ExitMissingInput, "the current folder cannot be found."};
  InFile(set.file, [&] { ReadCaseFile(file.text, cases); });
  return place.parent_path();
}

// The loads of the structure itself are checked as those of any model; that it has none is no
// mistake here.
void CheckStructure(CaseSet& set, CheckReport& report) {
  CheckOptions options;
  options.asksMemory = false;
  InFile(set.structure.file, [&] { CheckModel(set.structure.text, options, report); });
  FindOrigin(set.structure.file, report.model.tables, set.origin);
  NameInDeck(set.origin, report.model.tables, report.findings);
  set.findings = report.findings;
  InFile(set.structure.file, [&] {
    try {
      korvex::ReadInputText(set.structure.text, set.model);
    } catch (const korvex::Stop& stop) {
      // The findings say it better.
      if (CountFindings(set.findings, Severity::Error) == 0) throw;
      set.unreadable = stop.text;
    }
  });
  if (!set.unreadable.empty() || HasLoads(set.model.Tables)) return;
  DropNoLoads(set.findings);
}

// The solver does not use densities; an acceleration does.
void RaiseDensities(const CaseFile& cases, CaseSet& set) {
  const auto weighs = [](const LoadCase& each) { return each.hasAcceleration; };
  const auto first = std::find_if(cases.cases.begin(), cases.cases.end(), weighs);
  if (first == cases.cases.end()) return;
  for (Finding& finding : set.findings.findings) {
    if (finding.code != "K606") continue;
    finding.severity = Severity::Error;
    finding.message += " The self-weight of case \"" + first->name + "\" would be wrong by it.";
  }
  SortFindings(set.findings);
}

void ReadLoads(const fs::path& folder, const LoadCase& loadCase, CheckReport& structure,
               CaseSet& all, LoadSet& set) {
  LoadedModel file;
  set.sources.insert(LoadNamed((folder / fs::u8path(loadCase.loads)).lexically_normal(),
                               OwnerText(loadCase.loadsLine, loadCase), file, all));
  set.loadsFile = file.file;
  InFile(file.file, [&] {
    std::string loads;
    CheckLoadsFile(file.text, structure, set.findings, loads);
    korvex::ModelTables tables;
    korvex::ReadTables(loads, {}, tables);
    AddScaledLoads(tables, 1.0, set.loads);
  });
}

bool IsFinite(const korvex::ModelTables& tables) {
  const auto isFinite = [](double x) { return std::isfinite(x); };
  return std::all_of(
      tables.NodalForces.begin(), tables.NodalForces.end(), [&](const korvex::NodalForce& force) {
        return std::all_of(force.components.begin(), force.components.end(), isFinite);
      });
}

void AddWeight(const CaseSet& set, const LoadCase& loadCase, korvex::ModelTables& loads) {
  korvex::ModelTables weight;
  AddSelfWeight(set.model, loadCase.acceleration, weight);
  const std::string owner = OwnerText(loadCase.line, loadCase);
  if (!HasLoads(weight)) {
    StopInFile(set.file, owner + "the acceleration makes no loads, because all densities in \"" +
                             set.structure.file + "\" are 0.");
  }
  // Errors of the structure say it themselves.
  if (!IsFinite(weight) && CountFindings(set.findings, Severity::Error) == 0) {
    StopInFile(set.file, owner +
                             "the weight is not a number. Look at the densities and the shapes "
                             "of the elements: kvx check names them.");
  }
  AddScaledLoads(weight, 1.0, loads);
}

void MakeCases(const fs::path& folder, const CaseFile& cases, CheckReport& structure,
               CaseSet& set) {
  korvex::ModelTables base;
  SwapLoads(set.model.Tables, base);
  std::set<std::size_t> common;  // the structure and the case file, read by now
  for (std::size_t row = 0; row < set.sources.size(); ++row) common.insert(row);
  for (const LoadCase& loadCase : cases.cases) {
    StopIfInterrupted();
    LoadSet& made = set.sets.emplace_back();
    made.name = loadCase.name;
    made.sources = common;
    if (loadCase.name == BaseCaseName) SwapLoads(base, made.loads);
    if (!loadCase.loads.empty()) ReadLoads(folder, loadCase, structure, set, made);
    if (loadCase.hasAcceleration) AddWeight(set, loadCase, made.loads);
  }
}

void MakeCombinations(const CaseFile& cases, const std::vector<CaseFactors>& factors,
                      CaseSet& set) {
  for (std::size_t k = 0; k < factors.size(); ++k) {
    LoadSet combination;
    combination.name = cases.combinations[k].name;
    combination.isCombination = true;
    for (const auto& [row, factor] : factors[k].terms) {
      AddScaledLoads(set.sets[row].loads, factor, combination.loads);
      combination.sources.insert(set.sets[row].sources.begin(), set.sets[row].sources.end());
    }
    set.sets.push_back(std::move(combination));
  }
}

void Open(const CasesCommand& command, CaseSet& set) {
  CaseFile cases;
  const fs::path folder = ReadFile(command, set, cases);
  const std::string where = cases.structureLine > 0
                                ? "line " + std::to_string(cases.structureLine) + ": structure: "
                                : "structure: ";
  LoadNamed((folder / fs::u8path(cases.structure)).lexically_normal(), where, set.structure, set);
  Progress progress;
  BeginChecking(set.structure.file, set.structure.text.size(), progress);
  CheckReport structure;
  CheckStructure(set, structure);
  RaiseDensities(cases, set);
  EndProgress(progress);
  if (!set.unreadable.empty()) {
    if (command.force) StopInFile(set.structure.file, set.unreadable);
    return;
  }
  if (HasLoads(set.model.Tables)) AddBaseCase(cases);
  std::vector<CaseFactors> factors;
  InFile(set.file, [&] {
    ResolveCombinations(cases, factors);
    ResolveEnvelopes(cases, set.envelopes);
  });
  MakeCases(folder, cases, structure, set);
  MakeCombinations(cases, factors, set);
}

}  // namespace

ExitStatus OpenCases(const CasesCommand& command, CaseSet& set) {
  try {
    Open(command, set);
  } catch (const Refusal& reason) {
    Complain(Name, reason.complaint);
    return reason.status;
  } catch (const std::bad_alloc&) {
    Complain(Name, "there is not enough memory for it.");
    return ExitUnusableData;
  }
  return ExitFine;
}

std::size_t CountFindings(const CaseSet& set, Severity severity) {
  std::size_t count = CountFindings(set.findings, severity);
  for (const LoadSet& each : set.sets) count += CountFindings(each.findings, severity);
  return count;
}

}  // namespace kvx
