#include "commands/numbered_model.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "check/check_counting.h"
#include "check/check_text.h"
#include "check/read_checked.h"
#include "commands/case_record.h"
#include "finding/findings_text.h"
#include "renumber/permute_nodes.h"
#include "renumber/rewrite_text.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void Refuse(const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::Notice, reason};
}

void RefuseOthersModel() {
  std::error_code error;
  if (fs::is_symlink(ModelFileName, error)) {
    Refuse("it is a link to another file. Renumber that one, or put a copy here.");
  }
  if (HasCaseRecord(fs::current_path(error))) {
    Refuse("kvx cases has made it. Renumber the structure of the load cases, and solve them anew.");
  }
}

// What the solver does not read as it is written would be lost, or keep its old numbers.
void RefuseMistakes(const std::string& text, bool isWhole) {
  CheckedModel model;
  FindingList findings;
  CheckText(text, model, findings);
  if (CountFindings(findings, Severity::Error) == 0) CheckCounting(model, findings);
  SortFindings(findings);
  if (isWhole && CountFindings(findings, Severity::Error) == 0) return;
  Refuse("the solver does not read all of it as it is written" +
         (findings.findings.empty() ? "" : ": " + NameFinding(findings.findings.front())) +
         " Mend it first: kvx check tells how.");
}

}  // namespace

void ReadNumbered(NumberedModel& model) {
  RefuseOthersModel();
  CheckedModel checked;
  const CheckedReading reading = ReadChecked(model.file.text, checked);
  if (reading.slip.isOutOfMemory) Refuse(reading.slip.stop);
  RefuseMistakes(model.file.text, reading.isWhole);
  model.tables = std::move(checked.tables);
  model.end = reading.end;
  BuildNodeGraph(model.tables, model.graph);
  const bool isOutOfStep =
      std::any_of(reading.numbers.begin(), reading.numbers.end(),
                  [](const RunningNumbers& numbers) { return numbers.others > 0; });
  if (isOutOfStep) {
    model.notes.emplace_back(
        "The running numbers in the file, which the solver ignores, are those of the rows now.");
  }
}

MovedFile MoveModel(const std::vector<std::int32_t>& order, NumberedModel& model) {
  PermuteNodes(order, model.tables);
  return {ModelFileName, ModelFileName, RewriteModel(model.file.text, model.end, model.tables)};
}

}  // namespace kvx
