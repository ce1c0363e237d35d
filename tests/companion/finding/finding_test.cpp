// Findings are counted, the rest beyond 20 of a kind is one finding, and the order is by severity
// and line.
#include "finding/finding.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "finding/codes.h"

namespace kvx {
namespace {

Finding At(const char* code, std::size_t line) {
  Finding finding = MakeFinding(code);
  finding.line = line;
  finding.rows = {static_cast<std::int32_t>(line)};
  return finding;
}

TEST(FindingList, SortsBySeverityThenLine) {
  FindingList list;
  AddFinding(At("K303", 1), list);
  AddFinding(At("K104", 9), list);
  AddFinding(At("K407", 0), list);
  AddFinding(At("K101", 7), list);
  AddFinding(At("K202", 5), list);
  SortFindings(list);
  std::vector<std::string> codes;
  for (const Finding& finding : list.findings) codes.push_back(finding.code);
  EXPECT_EQ(codes, (std::vector<std::string>{"K101", "K104", "K202", "K407", "K303"}));
}

TEST(FindingList, KeepsTwentyOfAKindAndListsTheRest) {
  FindingList list;
  for (std::size_t line = 1; line <= 50; ++line) AddFinding(At("K104", line), list);
  AddFinding(At("K407", 0), list);
  SortFindings(list);
  ASSERT_EQ(list.findings.size(), 22U);
  const Finding& rest = list.findings[20];
  EXPECT_EQ(rest.line, 21U);
  EXPECT_EQ(rest.rows.size(), 30U);
  EXPECT_EQ(rest.rows.back(), 50);
  EXPECT_EQ(rest.message.rfind("and 30 more of this kind", 0), 0U) << rest.message;
  EXPECT_EQ(CountFindings(list, Severity::Error), 50U);
  EXPECT_EQ(CountFindings(list, Severity::Warning), 1U);
  EXPECT_EQ(CountFindings(list, Severity::Hint), 0U);
}

// Rows of different tables, and findings whose severity is not the usual one, are kinds of their
// own.
TEST(FindingList, CountsEachSeverityAndTable) {
  FindingList list;
  for (std::size_t line = 1; line <= 30; ++line) {
    Finding hint = At("K106", line);
    hint.severity = Severity::Hint;
    AddFinding(hint, list);
    Finding shell = At("K101", line);
    shell.table = "NELEM_S_4ND";
    AddFinding(shell, list);
    Finding beam = At("K101", line);
    beam.table = "NELEM_B";
    AddFinding(beam, list);
  }
  EXPECT_EQ(CountFindings(list, Severity::Error), 60U);
  EXPECT_EQ(CountFindings(list, Severity::Hint), 30U);
  EXPECT_EQ(list.findings.size(), 3U * 21U);
  list.findings[0].severity = Severity::Error;  // as where a later check raises a finding
  EXPECT_EQ(CountFindings(list, Severity::Error), 61U);
  EXPECT_EQ(CountFindings(list, Severity::Hint), 29U);
}

// A code is looked up by its number; each stands in the table of its group, in ascending order.
TEST(Codes, AreInOrder) {
  std::string last;
  for (const CodeText* text : ListCodes()) {
    EXPECT_LT(last, text->code);
    last = text->code;
    EXPECT_EQ(FindCode(text->code), text);
  }
  EXPECT_EQ(FindCode("K999"), nullptr);
  EXPECT_THROW(MakeFinding("K999"), std::logic_error);
}

}  // namespace
}  // namespace kvx
