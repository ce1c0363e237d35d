// The plan of the page's sources: which folder of companion/view/page/src may import which. Arrows
// run downward only: what is computed knows nothing of what is drawn or clicked.
//
// An import is the text behind `from`, relative to the file that has it.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace korvex::test {
namespace {

namespace fs = std::filesystem;

// The ground is "data"; "state" and "main" are files. What a folder may import besides itself.
const std::map<std::string, std::set<std::string>>& Plan() {
  static const std::map<std::string, std::set<std::string>> plan{
      {"data", {}},
      {"state", {"data"}},
      {"fields", {"data", "state"}},
      {"scene", {"data", "fields", "state"}},
      {"ui", {"data", "fields", "scene", "state"}},
      {"main", {"data", "fields", "scene", "ui", "state"}},
  };
  return plan;
}

fs::path PageSources() { return fs::path(KORVEX_SOURCE) / "companion/view/page/src"; }

// "data" of "data/blocks.ts", "state" of "state.ts".
std::string PartOf(const fs::path& path) { return path.begin()->stem().string(); }

std::vector<std::string> FindImports(const std::string& text) {
  std::vector<std::string> names;
  std::istringstream lines(text);
  const std::string mark = "from \"";
  for (std::string line; std::getline(lines, line);) {
    const std::size_t at = line.find(mark);
    const bool isImport = line.rfind("import ", 0) == 0 || line.rfind("} from ", 0) == 0 ||
                          line.rfind("export ", 0) == 0;
    if (!isImport || at == std::string::npos) continue;
    const std::size_t begin = at + mark.size();
    names.push_back(line.substr(begin, line.find('"', begin) - begin));
  }
  return names;
}

TEST(PageArrows, EveryImportIsInThePlan) {
  std::size_t files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(PageSources())) {
    if (entry.path().extension() != ".ts") continue;
    ++files;
    const fs::path path = fs::relative(entry.path(), PageSources());
    const std::string from = PartOf(path);
    ASSERT_EQ(Plan().count(from), 1U) << path << " is not in the plan";
    for (const std::string& name : FindImports(ReadFile(entry.path()))) {
      if (name[0] != '.') {
        // The one library draws; nobody else needs it.
        EXPECT_TRUE(from == "scene" && name.rfind("three", 0) == 0) << path << ": " << name;
        continue;
      }
      const std::string to = PartOf((path.parent_path() / name).lexically_normal());
      EXPECT_TRUE(to == from || Plan().at(from).count(to) == 1) << path << " imports " << name;
    }
  }
  EXPECT_GT(files, 20U);
}

TEST(PageArrows, ImportsAreSeen) {
  EXPECT_EQ(FindImports("import { a } from \"../data/b\";\nimport {\n  c,\n} from \"./d\";\n"),
            (std::vector<std::string>{"../data/b", "./d"}));
  EXPECT_EQ(PartOf("data/blocks.ts"), "data");
  EXPECT_EQ(PartOf("state"), "state");
}

}  // namespace
}  // namespace korvex::test
