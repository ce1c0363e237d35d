// The page on reliability names a test for each condition. All these tests exist.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace korvex::test {
namespace {

bool IsLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool IsName(const std::string& word) {
  return !word.empty() && word[0] >= 'A' && word[0] <= 'Z' &&
         std::all_of(word.begin(), word.end(), IsLetterOrDigit);
}

// "Suite.Test", or "Suite.*" for all tests of a suite. Files have lower-case names behind the
// point.
bool IsTestName(const std::string& word) {
  const std::size_t point = word.find('.');
  if (point == std::string::npos || !IsName(word.substr(0, point))) return false;
  const std::string test = word.substr(point + 1);
  return test == "*" || IsName(test);
}

// The test names between grave accents.
std::vector<std::string> FindTestNames(const std::string& line) {
  std::vector<std::string> names;
  std::size_t begin = line.find('`');
  while (begin != std::string::npos) {
    const std::size_t end = line.find('`', begin + 1);
    if (end == std::string::npos) break;
    const std::string word = line.substr(begin + 1, end - begin - 1);
    if (IsTestName(word)) names.push_back(word);
    begin = line.find('`', end + 1);
  }
  return names;
}

bool IsTestOfThisProgram(const std::string& name) {
  const std::size_t point = name.find('.');
  const std::string suiteName = name.substr(0, point), testName = name.substr(point + 1);
  const testing::UnitTest& all = *testing::UnitTest::GetInstance();
  for (int i = 0; i < all.total_test_suite_count(); ++i) {
    const testing::TestSuite& suite = *all.GetTestSuite(i);
    if (suite.name() != suiteName) continue;
    if (testName == "*") return true;
    for (int k = 0; k < suite.total_test_count(); ++k) {
      if (suite.GetTestInfo(k)->name() == testName) return true;
    }
  }
  return false;
}

TEST(ReliabilityPage, NamesTestsThatExist) {
  std::istringstream page(ReadFile(std::filesystem::path(KORVEX_DOCS) / "reliability.md"));
  std::size_t names = 0;
  for (std::string line; std::getline(page, line);) {
    for (const std::string& name : FindTestNames(line)) {
      EXPECT_TRUE(IsTestOfThisProgram(name)) << name;
      ++names;
    }
  }
  EXPECT_GT(names, 0U);
}

// A row is "| condition | reaction | test |". The first two lines of a table are its head.
TEST(ReliabilityPage, HasATestForEachRow) {
  std::istringstream page(ReadFile(std::filesystem::path(KORVEX_DOCS) / "reliability.md"));
  int tableLine = 0;
  for (std::string line; std::getline(page, line);) {
    tableLine = !line.empty() && line[0] == '|' ? tableLine + 1 : 0;
    EXPECT_TRUE(tableLine <= 2 || !FindTestNames(line).empty()) << line;
  }
}

}  // namespace
}  // namespace korvex::test
