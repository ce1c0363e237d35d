// The examples on the page of the companion are what the program says: each block that begins with
// "$ kvx" is called, in the order of the page, in a folder with the stiffened panel as "deck".
//
// A line "..." stands for lines that are left out. Times, threads, sizes of files and rounding
// errors are not compared, nor is where lines and columns end: that depends on them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include "sparse/sparse_factor.h"
#include "support/run_program.h"
#include "support/temp_folder.h"
#include "support/words.h"

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

// Whether the word is a unit, "s" or "s,".
bool IsUnit(const std::string& word, const std::string& unit) {
  if (word.rfind(unit, 0) != 0) return false;
  return word.size() == unit.size() || std::ispunct(static_cast<unsigned char>(word[unit.size()]));
}

// "2 threads", "1 thread", which depend on the machine, become "# threads".
void HideThreads(std::vector<std::string>& words) {
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i].rfind("thread", 0) != 0) continue;
    if (words[i - 1].find_first_not_of("0123456789") != std::string::npos) continue;
    words[i - 1] = "#";
    const std::string end = std::ispunct(static_cast<unsigned char>(words[i].back())) != 0
                                ? words[i].substr(words[i].size() - 1)
                                : "";
    words[i] = "threads" + end;
  }
}

// Times, "0.1 s" or "less than 0.1 s", become "# s"; sizes, "0.9 MB.", become "# MB.".
void HideMeasures(std::vector<std::string>& words) {
  for (std::size_t i = 1; i < words.size(); ++i) {
    const bool isNumber = words[i - 1].find_first_not_of("0123456789.e-") == std::string::npos;
    if (!isNumber || !(IsUnit(words[i], "s") || IsUnit(words[i], "MB"))) continue;
    words[i - 1] = "#";
    if (i < 3 || words[i - 3] != "less" || words[i - 2] != "than") continue;
    const auto less = words.begin() + static_cast<std::ptrdiff_t>(i - 3);
    words.erase(less, less + 2);
    i -= 2;
  }
}

// A number such as 4e-14 within the word becomes "#".
void HideRounding(std::string& word) {
  const std::string digits = "0123456789";
  const std::size_t e = word.find("e-");
  if (e == std::string::npos || e == 0 || e + 2 >= word.size()) return;
  if (digits.find(word[e - 1]) == std::string::npos) return;
  if (digits.find(word[e + 2]) == std::string::npos) return;
  const std::size_t before = word.find_last_not_of("0123456789.-", e - 1);
  const std::size_t begin = before == std::string::npos ? 0 : before + 1;
  const std::size_t end = std::min(word.find_first_not_of(digits, e + 2), word.size());
  word.replace(begin, end - begin, "#");
}

// What is compared: the words with one blank between them.
std::string Simplify(std::string text) {
  std::replace(text.begin(), text.end(), '\\', '/');  // of folders, on Windows
  std::vector<std::string> words;
  std::istringstream lines(text);
  bool isEngine = false;
  for (std::string line; std::getline(lines, line);) {
    // Without the sparse engine the reason is another one, which may take two lines.
    isEngine = !HasSparseEngine() &&
               (line.rfind("Engine: ", 0) == 0 || (isEngine && line.rfind("  ", 0) == 0));
    if (isEngine) continue;
    const bool isRounding = line.rfind("  left over ", 0) == 0;
    for (std::string& word : SplitWords(isRounding ? "left over #" : line)) {
      words.push_back(std::move(word));
    }
  }
  HideThreads(words);
  HideMeasures(words);
  for (std::string& word : words) HideRounding(word);
  return JoinWords(words);
}

// Whether the output is the text, in which "..." stands for anything.
bool IsOutput(const std::string& text, const std::string& output) {
  const std::string expected = Simplify(text), all = Simplify(output);
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
  EXPECT_EQ(Simplify("on 1 thread. x"), Simplify("on 16 threads. x"));
  EXPECT_NE(Simplify("7.3e+05"), Simplify("7.4e+05"));
}

}  // namespace
}  // namespace kvx::test
