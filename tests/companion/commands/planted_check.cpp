// In place of the checks: a CheckModel that finds what the text says, to try the commands without
// them. Each line of the text is a finding: CODE LINE COLUMN MESSAGE. Other words let it fail.
#include <new>
#include <sstream>
#include <stdexcept>

#include "commands/check_model.h"
#include "report/stop.h"

namespace kvx {

void CheckModel(std::string_view text, const CheckOptions& options, CheckReport& report) {
  std::istringstream lines{std::string(text)};
  for (std::string word; lines >> word;) {
    if (word == "FAULT") throw std::logic_error("planted");
    if (word == "MEMORY") throw std::bad_alloc();
    if (word == "STOP") throw korvex::Stop{korvex::StopKind::Notice, "planted stop"};
    if (word == "TOLERANCE") {
      report.model.notChecked.push_back("tolerance " + std::to_string(options.tolerance));
      continue;
    }
    Finding finding = MakeFinding(word.c_str());
    lines >> finding.line >> finding.column;
    std::getline(lines, finding.message);
    AddFinding(finding, report.findings);
  }
  SortFindings(report.findings);
}

}  // namespace kvx
