// The origin of check_report.h, and what stands beside the model.
#include <algorithm>

#include "commands/check_report.h"
#include "commands/folder_cases.h"
#include "commands/load_model.h"
#include "commands/origin_file.h"
#include "commands/origin_words.h"
#include "commands/terminal.h"

namespace kvx {

void AddOrigin(CheckReport& report) {
  const korvex::ModelTables& tables = report.model.tables;
  report.hasForeignOrigin =
      FindOrigin(ModelFileName, tables, report.origin) == OriginState::Foreign;
  NameInDeck(report.origin, tables, report.findings);
}

void PointToCases(const LoadedModel& model, FindingList& findings) {
  const auto isNoLoads = [](const Finding& finding) { return finding.code == "K407"; };
  std::vector<Finding>& list = findings.findings;
  const auto found = std::find_if(list.begin(), list.end(), isNoLoads);
  const std::filesystem::path file = std::filesystem::u8path(model.file);
  if (found == list.end() || !HasCasesBeside(file.filename())) return;
  const std::string cases = (file.parent_path() / CaseFileName).generic_u8string();
  found->remedy = "Loads of this model are in cases.toml: solve it with kvx cases " +
                  QuoteArgument(cases) + '.';
}

void DropNoLoads(FindingList& findings) {
  const auto isNoLoads = [](const Finding& finding) { return finding.code == "K407"; };
  std::vector<Finding>& list = findings.findings;
  list.erase(std::remove_if(list.begin(), list.end(), isNoLoads), list.end());
}

}  // namespace kvx
