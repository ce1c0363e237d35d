// The CSV of run_report.h.
#include "commands/audit_table.h"
#include "commands/run_report.h"
#include "finding/text_layout.h"

namespace kvx {

std::string RunCsv(const FolderRun& run, const AuditReport* report) {
  ResultTable row = MakeAuditTable("model");
  const std::string name = run.file.empty() ? run.place : run.file;
  if (report != nullptr) {
    AddAuditRow(name, report, VerdictText(*report), row);
  } else if (run.complaint.empty()) {
    const std::size_t errors = CountFindings(run.findings, Severity::Error);
    AddAuditRow(name, nullptr, "not solved: " + CountText(errors, "error", "errors"), row);
  } else {
    AddAuditRow(name, nullptr, "not solved: " + run.complaint, row);
  }
  return CsvRows(row);
}

}  // namespace kvx
