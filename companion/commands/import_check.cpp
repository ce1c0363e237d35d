// The last stage of import_job.h: the check of the model that was written.
#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "cases/load_tables.h"
#include "check/fixed_dofs.h"
#include "check/sum_loads.h"
#include "commands/check_loads_file.h"
#include "commands/check_report.h"
#include "commands/import_job.h"
#include "commands/origin_words.h"
#include "commands/progress.h"
#include "deck/read_tables.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

// The solver does not use densities, but kvx cases does for an acceleration, and stops at such a
// finding.
void RaiseDensities(const std::vector<ImportedCase>& cases, FindingList& findings) {
  const auto first = std::find_if(cases.begin(), cases.end(),
                                  [](const ImportedCase& each) { return each.hasAcceleration; });
  if (first == cases.end()) return;
  for (Finding& finding : findings.findings) {
    if (finding.code != "K606") continue;
    finding.severity = Severity::Error;
    finding.message += " The self-weight of case \"" + first->name + "\" would be wrong by it.";
  }
  SortFindings(findings);
}

// The mass that kvx cases gives a weight: of all elements. The one of the check leaves out what
// findings name, be it for its units alone.
double WeighAll(CheckedModel& model) {
  auto states = model.states;
  for (std::vector<ElementState>& kind : states) {
    std::replace(kind.begin(), kind.end(), ElementState::Broken, ElementState::Sound);
  }
  decltype(model.doubtfulRows) doubtfulRows{};
  states.swap(model.states);
  doubtfulRows.swap(model.doubtfulRows);
  const double mass = WeighModel(model).mass;
  states.swap(model.states);
  doubtfulRows.swap(model.doubtfulRows);
  return mass;
}

// Names the rows of the loads' findings in the deck and sums the case's loads, those of gravity
// included. loads: of LoadsFileText's rows, as a model text; "": none. findings: of its file; null:
// none.
void SumCase(const std::string& loads, const FixedDofs& dofs, double mass, FindingList* findings,
             CheckReport& structure, ImportedCase& made) {
  korvex::ModelTables tables;
  if (!loads.empty()) korvex::ReadTables(loads, {}, tables);
  LoadSums sums;
  SwapLoads(structure.model.tables, tables);
  SumLoads(structure.model, dofs, sums);
  if (findings != nullptr) NameInDeck(structure.origin, structure.model.tables, *findings);
  SwapLoads(structure.model.tables, tables);
  for (std::size_t i = 0; i < 3; ++i) {
    made.force[i] = sums.sums[i];
    if (made.hasAcceleration) made.force[i] += mass * made.acceleration[i];
  }
}

// Finds the text of a file of loads; null: the case has none.
const FileToWrite* FindLoads(const ImportJob& job, const ImportedCase& of) {
  const auto isOf = [&](const FileToWrite& file) { return file.name == of.file; };
  const auto found = std::find_if(job.loadsFiles.begin(), job.loadsFiles.end(), isOf);
  return found == job.loadsFiles.end() ? nullptr : &*found;
}

}  // namespace

void CheckImported(ImportJob& job) {
  CheckReport& report = job.outcome.check;
  CheckModel(job.modelText, {}, report);
  NameInDeck(report.origin, report.model.tables, report.findings);
  if (!HasCaseFile(job.outcome)) return;
  DropNoLoads(report.findings);
  RaiseDensities(job.outcome.cases, report.findings);
  FixedDofs dofs;
  CollectFixedDofs(report.model, dofs);
  const double mass = WeighAll(report.model);
  for (ImportedCase& each : job.outcome.cases) {
    StopIfInterrupted();
    std::string loadsText;
    FindingList* findings = nullptr;
    if (const FileToWrite* const file = FindLoads(job, each)) {
      LoadsFindings& loads = job.outcome.loadsFiles.emplace_back();
      loads.file = (fs::u8path(job.outcome.folder) / fs::u8path(file->name)).u8string();
      CheckLoadsFile(file->text, report, loads.findings, loadsText);
      findings = &loads.findings;
    }
    SumCase(loadsText, dofs, mass, findings, report, each);
  }
}

}  // namespace kvx
