#include "support/expect_findings.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx::test {

namespace {

bool Names(const std::vector<std::int32_t>& numbers, int number) {
  return number < 0 || std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

bool IsExpected(const Finding& finding, const Expected& expected) {
  return finding.code == expected.code &&
         (expected.table.empty() || finding.table == expected.table) &&
         Names(finding.rows, expected.row) && Names(finding.nodes, expected.node) &&
         (expected.line == 0 || finding.line == static_cast<std::size_t>(expected.line));
}

}  // namespace

CheckReport Check(const std::string& text, const CheckOptions& options) {
  CheckReport report;
  CheckModel(text, options, report);
  return report;
}

CheckReport Check(const korvex::test::ModelText& model, const CheckOptions& options) {
  return Check(korvex::test::WriteModel(model), options);
}

std::string ListFindings(const CheckReport& report) {
  std::string list;
  for (const Finding& finding : report.findings.findings) {
    list += finding.code + " line " + std::to_string(finding.line) + ", column " +
            std::to_string(finding.column) + ": " + finding.message + ' ' + finding.remedy + '\n';
  }
  return list;
}

void ExpectOnly(const CheckReport& report, const Expected& expected, const std::string& groups) {
  bool found = false;
  for (const Finding& finding : report.findings.findings) {
    if (groups.find(finding.code[1]) == std::string::npos) continue;
    if (IsExpected(finding, expected)) {
      found = true;
      EXPECT_FALSE(finding.message.empty());
      continue;
    }
    EXPECT_TRUE(finding.severity == Severity::Hint && finding.code != expected.code)
        << "besides " << expected.code << ":\n"
        << ListFindings(report);
  }
  EXPECT_TRUE(found) << expected.code << " does not name " << expected.table << " row "
                     << expected.row << ", node " << expected.node << ", line " << expected.line
                     << ":\n"
                     << ListFindings(report);
}

void ExpectNone(const CheckReport& report, const std::string& groups) {
  for (const Finding& finding : report.findings.findings) {
    if (groups.find(finding.code[1]) == std::string::npos) continue;
    EXPECT_EQ(finding.severity, Severity::Hint) << ListFindings(report);
  }
}

}  // namespace kvx::test
