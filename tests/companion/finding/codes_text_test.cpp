// The examples of the codes of the text: in the small model of docs/model-file.md, the lines before
// give the finding, and the lines after are those of the model.
#include <gtest/gtest.h>

#include <filesystem>

#include "finding/codes.h"
#include "support/expect_findings.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

std::string ReadSmallModel() {
  const std::string page =
      korvex::test::ReadFile(std::filesystem::path(KORVEX_SOURCE) / "docs" / "model-file.md");
  const std::size_t begin = page.find("### Toln_Korvex release=3.0 ###\n");
  return page.substr(begin, page.find("```", begin) - begin);
}

TEST(TextCodes, HaveTrueExamples) {
  const std::string model = ReadSmallModel();
  ExpectNone(Check(model));
  int examples = 0;
  for (const CodeText& code : TextCodes) {
    SCOPED_TRACE(code.code);
    const std::string before = std::string(code.before) + "\n",
                      after = std::string(code.after) + "\n";
    if (before == "\n") continue;
    const std::size_t at = model.find(after);
    ASSERT_NE(at, std::string::npos);
    ExpectOnly(Check(std::string(model).replace(at, after.size(), before)),
               {code.code, "", -1, -1, 0});
    ++examples;
  }
  EXPECT_EQ(examples, 17);  // all but those without an example: K002 and K019
}

TEST(TextCodes, AreExplained) {
  for (const CodeText& code : TextCodes) {
    for (const char* text : {code.meaning, code.solver, code.remedy}) {
      EXPECT_EQ(std::string(text).back(), '.') << code.code;
    }
  }
}

}  // namespace
}  // namespace kvx::test
