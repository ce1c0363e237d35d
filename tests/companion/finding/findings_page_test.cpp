// The page docs/findings.md is what the program writes, and explains every code.
#include "finding/findings_page.h"

#include <gtest/gtest.h>

#include "finding/codes.h"
#include "support/temp_folder.h"

namespace kvx {
namespace {

TEST(FindingsPage, IsTheOneInTheDocs) {
  EXPECT_EQ(korvex::test::ReadFile(KORVEX_DOCS "/findings.md"), FindingsPage())
      << "Write it anew: build/release/companion/kvx explain --page > docs/findings.md";
}

TEST(FindingsPage, HasASectionForEveryCode) {
  const std::string page = FindingsPage();
  for (const CodeText* code : ListCodes()) {
    EXPECT_NE(page.find(std::string("\n### ") + code->code + " "), std::string::npos) << code->code;
  }
  std::size_t groups = 0;
  for (std::size_t at = page.find("\n## "); at != std::string::npos;
       at = page.find("\n## ", at + 1))
    ++groups;
  EXPECT_EQ(groups, 8U);
}

TEST(FindingSection, ShowsAllParts) {
  const CodeText code{"K104",         Severity::Error, "Title",        "Meaning.",
                      "Solver does.", "Do so.",        "0:0,1<0,1,0>", "0:0,1<0,0,1>"};
  EXPECT_EQ(FindingSection(code),
            "\n### K104 Title\n"
            "\nSeverity: error.\n"
            "\nMeaning.\n"
            "\n**What the solver does with it.** Solver does.\n"
            "\n**What to do.** Do so.\n"
            "\nBefore:\n\n```\n0:0,1<0,1,0>\n```\n"
            "\nAfter:\n\n```\n0:0,1<0,0,1>\n```\n");
}

TEST(FindingSection, LeavesOutWhatIsEmpty) {
  const CodeText code{"K501", Severity::Hint, "Title", "", "", "", "", ""};
  EXPECT_EQ(FindingSection(code), "\n### K501 Title\n\nSeverity: hint.\n");
}

// What Markdown takes as a mark is shown as it is: within a line, and where a line begins.
TEST(FindingSection, EscapesMarks) {
  const CodeText code{"K501", Severity::Hint, "A * b", "Use <0,0,1> [0] `x`", "", "", "", ""};
  const std::string text = FindingSection(code);
  EXPECT_NE(text.find("### K501 A \\* b\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\nUse \\<0,0,1> \\[0] \\`x\\`\n"), std::string::npos) << text;

  const std::string before(99, 'x');  // so that what follows begins a line
  for (const auto& [begin, escaped] :
       std::vector<std::pair<std::string, std::string>>{{"#0: a", "\\#0: a"},
                                                        {"- a", "\\- a"},
                                                        {"2. a", "2\\. a"},
                                                        {"12) a", "12\\) a"},
                                                        {"2 a", "2 a"},
                                                        {"+5 a", "\\+5 a"},
                                                        {"206000", "206000"}}) {
    const std::string meaning = before + " " + begin;
    const CodeText wrapped{"K501", Severity::Hint, "T", meaning.c_str(), "", "", "", ""};
    EXPECT_NE(FindingSection(wrapped).find(before + "\n" + escaped + "\n"), std::string::npos)
        << FindingSection(wrapped);
  }
}

}  // namespace
}  // namespace kvx
