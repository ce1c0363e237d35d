// Findings, totals and explanations as text.
#include "finding/findings_text.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx {
namespace {

Finding MakeBeamFinding() {
  Finding finding = MakeFinding("K104");
  finding.line = 7019;
  finding.message =
      "beam 10 at (1500, 600, 0) .. (1500, 1200, 0): orientation vector <0,1,0> is parallel to its "
      "axis; all displacements would be NaN.";
  finding.remedy = "Use <0,0,1>.";
  return finding;
}

TEST(FindingText, IsBrokenAndIndented) {
  EXPECT_EQ(
      FindingText(MakeBeamFinding(), {}),
      "ERROR K104 line 7019: beam 10 at (1500, 600, 0) .. (1500, 1200, 0): orientation vector "
      "<0,1,0> is\n"
      "      parallel to its axis; all displacements would be NaN. Use <0,0,1>.\n");
}

TEST(FindingText, NamesTheColumnWhereThereIsOne) {
  Finding finding = MakeFinding("K018");
  finding.line = 12;
  finding.column = 3;
  finding.message = "text.";
  EXPECT_EQ(FindingText(finding, {}), "WARN  K018 line 12, column 3: text.\n");
  finding.line = 0;
  EXPECT_EQ(FindingText(finding, {}), "WARN  K018 text.\n");
  finding.severity = Severity::Hint;
  EXPECT_EQ(FindingText(finding, {}), "HINT  K018 text.\n");
}

// The codes stand in one column with colours, too, and the colour does not count as width.
TEST(FindingText, IsColoredOnRequest) {
  const TextStyle plain{60, false}, colored{60, true};
  std::string text = FindingText(MakeBeamFinding(), colored);
  EXPECT_EQ(text.rfind("\x1B[1;31mERROR\x1B[0m K104 line 7019", 0), 0U) << text;
  text.replace(0, std::string("\x1B[1;31mERROR\x1B[0m").size(), "ERROR");
  EXPECT_EQ(text, FindingText(MakeBeamFinding(), plain));
}

TEST(FindingText, ObeysNoByteOfTheFile) {
  Finding finding = MakeFinding("K011");
  finding.message = "found '\x1B]0;title\x07\xFF'\n";
  EXPECT_EQ(FindingText(finding, {}), "ERROR K011 found '\\x1B]0;title\\x07\\xFF'\\x0A\n");
}

FindingList MakeList(int errors, int warnings, int hints) {
  FindingList list;
  for (int i = 0; i < errors; ++i) AddFinding(MakeFinding("K104"), list);
  for (int i = 0; i < warnings; ++i) AddFinding(MakeFinding("K018"), list);
  for (int i = 0; i < hints; ++i) AddFinding(MakeFinding("K501"), list);
  SortFindings(list);
  return list;
}

TEST(TotalText, NamesWhatOccurs) {
  EXPECT_EQ(TotalText(MakeList(0, 0, 0)), "No errors, no warnings.");
  EXPECT_EQ(TotalText(MakeList(0, 0, 1)), "No errors, no warnings, 1 hint.");
  EXPECT_EQ(TotalText(MakeList(3, 1, 2)), "3 errors, 1 warning, 2 hints.");
  EXPECT_EQ(TotalText(MakeList(1, 0, 0)), "1 error.");
  EXPECT_EQ(TotalText(MakeList(0, 2, 0)), "2 warnings.");
  EXPECT_EQ(TotalText(MakeList(50, 0, 0)), "50 errors.");
}

TEST(ExplanationText, ShowsAllParts) {
  const CodeText code{
      "K104",   Severity::Error,       "Title",       "Meaning of it.", "Solver does.",
      "Do so.", "0:0,1<0,1,0>\n1:1,2", "0:0,1<0,0,1>"};
  EXPECT_EQ(ExplanationText(code, {}),
            "K104 Title (error)\n"
            "\nWhat it means\n  Meaning of it.\n"
            "\nWhat the solver does with it\n  Solver does.\n"
            "\nWhat to do\n  Do so.\n"
            "\nBefore\n    0:0,1<0,1,0>\n    1:1,2\n"
            "\nAfter\n    0:0,1<0,0,1>\n");
}

TEST(ExplanationText, LeavesOutWhatIsEmpty) {
  const CodeText code{"K104", Severity::Hint, "Title", "", "", "Do so.", "", ""};
  EXPECT_EQ(ExplanationText(code, {}), "K104 Title (hint)\n\nWhat to do\n  Do so.\n");
}

// On a wide terminal paragraphs stay readable.
TEST(ExplanationText, IsNotWiderThanAPage) {
  std::string meaning;
  for (int i = 0; i < 100; ++i) meaning += "word ";
  const CodeText code{"K104", Severity::Hint, "Title", meaning.c_str(), "", "", "", ""};
  const std::string text = ExplanationText(code, {300, false});
  std::size_t longest = 0;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    longest = std::max(longest, end - begin);
    begin = end + 1;
  }
  EXPECT_EQ(longest, 96U) << text;  // two blanks and 19 words; the next one needs 101
}

TEST(CodeListText, HasEveryCodeOnce) {
  const std::string text = CodeListText({});
  for (const CodeText* code : ListCodes()) {
    const std::string begin = std::string("  ") + code->code + "  ";
    const std::size_t at = text.find(begin);
    ASSERT_NE(at, std::string::npos) << code->code;
    EXPECT_EQ(text.find(begin, at + 1), std::string::npos) << code->code;
    EXPECT_NE(text.find(code->title, at), std::string::npos) << code->code;
  }
  EXPECT_EQ(text.rfind("Text of the file\n  K001  error    ", 0), 0U) << text;
  EXPECT_NE(text.find("\n\nUnits and plausibility\n"), std::string::npos);
}

}  // namespace
}  // namespace kvx
