// The examples on the page of the companion are what the program says: each block that begins with
// "$ kvx" is called, in the order of the page, in a folder with the stiffened panel as "deck".
//
// A line "..." stands for lines that are left out. Times and rounding errors are not compared, nor
// is where lines and columns end: that depends on them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <sstream>

#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ReadFile;

// A command of the page and the text below it.
struct Example {
  std::vector<std::string> arguments;
  std::string text;
};

std::vector<Example> ReadExamples(const std::string& page) {
  std::vector<Example> examples;
  std::istringstream stream(page);
  bool isInside = false;
  for (std::string line; std::getline(stream, line);) {
    if (line.rfind("$ kvx ", 0) == 0) {
      isInside = true;
      examples.emplace_back();
      std::istringstream words(line.substr(6));
      for (std::string word; words >> word;) examples.back().arguments.push_back(word);
    } else if (line.rfind("```", 0) == 0) {
      isInside = false;
    } else if (isInside) {
      examples.back().text += line + '\n';
    }
  }
  return examples;
}

// What is compared: the words with one blank between them.
std::string Simplify(std::string text) {
  std::replace(text.begin(), text.end(), '\\', '/');  // of folders, on Windows
  text = std::regex_replace(text, std::regex("\n  left over [^\n]*"), "\n  left over #");
  text = std::regex_replace(text, std::regex("\\s+"), " ");
  text = std::regex_replace(text, std::regex("(less than )?[0-9.e-]+ s\\b"), "# s");
  return std::regex_replace(text, std::regex("-?[0-9.]+e-[0-9]+"), "#");
}

// Whether the output is the text, in which "..." stands for anything.
bool IsOutput(const std::string& text, const std::string& output) {
  const std::string expected = Simplify("\n" + text), all = Simplify("\n" + output);
  const std::string gap = " ... ";
  std::size_t at = 0, begin = 0;
  for (bool isFirst = true;; isFirst = false) {
    const std::size_t end = expected.find(gap, begin);
    const std::string part = expected.substr(begin, end - begin);
    const std::size_t found = all.find(part, at);
    if (found == std::string::npos || (isFirst && found != 0)) return false;
    at = found + part.size();
    if (end == std::string::npos) return at == all.size() || part.empty();
    begin = end + gap.size();
  }
}

TEST(KvxPageExamples, AreWhatTheProgramSays) {
  const std::vector<Example> examples = ReadExamples(ReadFile(KORVEX_DOCS "/companion.md"));
  EXPECT_GE(examples.size(), 6U);
  const korvex::test::TempFolder folder;
  fs::copy(KORVEX_EXAMPLES "/stiffened-panel", folder.Path() / "deck");
  for (const Example& example : examples) {
    SCOPED_TRACE(example.arguments.front());
    const auto run = korvex::test::RunProgram(KVX_PROGRAM, folder.Path(), "", example.arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_TRUE(IsOutput(example.text, run.out)) << example.text << "\nis not\n" << run.out;
  }
}

// The comparison sees a wrong number, a line too many and one that is missing.
TEST(KvxPageExamples, AreCompared) {
  const std::string output = "a 1\nb  2.5e-13\nsolved in 0.4 s, c\n";
  EXPECT_TRUE(IsOutput("a 1\nb 9.1e-12\nsolved in less than 0.1 s,\nc\n", output));
  EXPECT_TRUE(IsOutput("a 1\n...\n", output));
  EXPECT_TRUE(IsOutput("a 1\n...\nsolved in 3 s, c\n", output));
  EXPECT_FALSE(IsOutput("a 1\nb 2.5e-13\n", output));
  EXPECT_FALSE(IsOutput("b 2.5e-13\nsolved in 0.4 s, c\n", output));
  EXPECT_FALSE(IsOutput("a 2\n...\n", output));
  EXPECT_FALSE(IsOutput("a 1\n...\nsolved in 0.4 s, d\n", output));
  EXPECT_NE(Simplify("7.3e+05"), Simplify("7.4e+05"));
}

}  // namespace
}  // namespace kvx::test
