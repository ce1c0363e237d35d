#include "support/audited.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace kvx::test {

namespace {

void AuditSolved(AuditOptions& options, Audited& audited) {
  const CheckReport check = Check(audited.text);
  options.comparesFiles = false;
  options.modelText = audited.text;
  options.modelErrors = CountFindings(check.findings, Severity::Error);
  if (options.modelErrors > 0) options.firstError = check.findings.findings.front().message;
  AuditModel(options, audited.solved, audited.report);
}

}  // namespace

Audited Audit(const korvex::test::ModelText& model, double yield) {
  Audited audited;
  audited.text = korvex::test::WriteModel(model);
  SolveInMemory(audited.text, {}, audited.solved);
  AuditOptions options;
  options.yield = yield;
  AuditSolved(options, audited);
  return audited;
}

Audited AuditDisplacements(const korvex::test::ModelText& model,
                           std::vector<double> displacements) {
  Audited audited;
  audited.text = korvex::test::WriteModel(model);
  CompleteFromDisplacements(audited.text, std::move(displacements), audited.solved);
  AuditOptions options;
  options.reading.fit = DisplacementFit::Fits;
  AuditSolved(options, audited);
  return audited;
}

void ExpectOnly(const Audited& audited, Expected expected, Severity severity) {
  if (expected.line == 0 && expected.row >= 0) {
    expected.line = LineOfRow(audited.text, expected.table, expected.row);
  }
  CheckReport report;
  report.findings = audited.report.findings;
  ExpectOnly(report, expected, "7");
  const Finding finding = FindFinding(audited.report, expected.code);
  EXPECT_EQ(finding.severity, severity) << ListFindings(report);
  EXPECT_EQ(finding.hasPosition, !finding.nodes.empty());
  if (finding.remedy.empty()) ADD_FAILURE() << "no remedy: " << ListFindings(report);
}

Finding FindFinding(const AuditReport& report, const std::string& code) {
  const std::vector<Finding>& findings = report.findings.findings;
  const auto found = std::find_if(findings.begin(), findings.end(),
                                  [&](const Finding& finding) { return finding.code == code; });
  return found == findings.end() ? Finding{} : *found;
}

int LineOfRow(const std::string& text, const std::string& table, int row) {
  const std::size_t at = text.find(table + '=');
  EXPECT_NE(at, std::string::npos) << table;
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(at, text.size()));
  return static_cast<int>(std::count(text.begin(), end, '\n')) + 2 + row;
}

}  // namespace kvx::test
