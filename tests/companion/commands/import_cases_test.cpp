// Load cases of an import as files.
#include "commands/import_cases.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cases/case_file.h"
#include "cases/folder_name.h"
#include "cases/load_tables.h"
#include "deck/read_tables.h"

namespace kvx::test {
namespace {

// A case with a force, or with none.
BuiltCase Case(const std::string& name, double force) {
  BuiltCase made;
  made.name = name;
  if (force == 0.0) return made;
  korvex::NodalForce row;
  row.node = 7;
  row.components[2] = force;
  made.loads.NodalForces.push_back(row);
  made.loads.NFOR = 1;
  return made;
}

BuiltCase Gravity(const std::string& name, double force) {
  BuiltCase made = Case(name, force);
  made.hasAcceleration = true;
  made.acceleration = {0.0, 0.1, -9810.0};
  return made;
}

std::vector<std::string> NamesOf(const std::vector<std::string>& deckNames) {
  std::vector<BuiltCase> built;
  for (const std::string& name : deckNames) built.push_back(Case(name, 1.0));
  std::vector<ImportedCase> cases;
  NameCases(built, cases);
  std::vector<std::string> names;
  for (const ImportedCase& each : cases) names.push_back(each.name);
  return names;
}

TEST(ImportCases, NamesOfTheDeckBecomeNamesOfFolders) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(NamesOf({"subcase 1", "subcase 2"}), (Names{"subcase-1", "subcase-2"}));
  EXPECT_EQ(NamesOf({"Wind: 0/90 deg.", "../up", "a\"b\\c"}),
            (Names{"Wind-0-90-deg", "up", "a-b-c"}));
  EXPECT_EQ(NamesOf({"Gew\xC3\xB6lbe", "\xFF\xFE"}), (Names{"Gew\xC3\xB6lbe", "case-2"}));
  // Empty, a device of Windows, the name of an envelope, and of the structure's own loads.
  EXPECT_EQ(NamesOf({"", "NUL", "envelope-all", "base"}),
            (Names{"case-1", "case-2", "case-3", "base-2"}));
}

// On some systems "A" and "a" are one folder.
TEST(ImportCases, NamesAreDifferent) {
  const std::vector<std::string> names = NamesOf({"wind", "Wind", "wind-2", "wind"});
  EXPECT_EQ(names, (std::vector<std::string>{"wind", "Wind-2", "wind-2-2", "wind-3"}));
}

TEST(ImportCases, LongNamesFitAFolder) {
  const std::vector<std::string> names =
      NamesOf({std::string(500, 'x'), std::string(500, 'x'), std::string(400, '/') + "a"});
  for (const std::string& name : names) EXPECT_EQ(FindFolderFault(name), "") << name;
  EXPECT_NE(names[0], names[1]);
}

TEST(ImportCases, OneCaseWithoutGravityFitsTheModelFile) {
  EXPECT_TRUE(FitModelFile({}));
  EXPECT_TRUE(FitModelFile({Case("", 1.0)}));
  EXPECT_FALSE(FitModelFile({Gravity("", 1.0)}));
  EXPECT_FALSE(FitModelFile({Case("a", 1.0), Case("b", 1.0)}));
}

TEST(ImportCases, FileOfLoadsIsReadAsOne) {
  const std::string text = LoadsFileText(Case("", -1.5).loads);
  EXPECT_EQ(text.rfind("Number of forces:NFOR=1\n7<0,0,-1.5,0,0,0>\n", 0), 0U) << text;
  LoadText isolated;
  IsolateLoads(text, isolated);
  korvex::ModelTables tables;
  korvex::ReadTables(isolated.text, {}, tables);
  ASSERT_EQ(tables.NodalForces.size(), 1U);
  EXPECT_EQ(tables.NodalForces[0].components[2], -1.5);
}

// The text is one that kvx cases reads, whatever the deck and its cases are called.
TEST(ImportCases, CaseFileIsReadAsItIsMeant) {
  const std::vector<BuiltCase> built{Case("dead \"load\"\n[case.x]", 1.0), Gravity("weight", 0.0),
                                     Gravity("Gew\xC3\xB6lbe", 2.0)};
  std::vector<ImportedCase> cases;
  NameCases(built, cases);
  CaseFile file;
  ReadCaseFile(CasesFileText("a\nb.bdf", cases), file);
  EXPECT_EQ(file.structure, "fem_solving.txt");
  ASSERT_EQ(file.cases.size(), 3U);
  EXPECT_EQ(file.cases[0].name, "dead-load-case.x");
  EXPECT_EQ(file.cases[0].loads, "loads-dead-load-case.x.txt");
  EXPECT_FALSE(file.cases[0].hasAcceleration);
  EXPECT_EQ(file.cases[1].loads, "");
  EXPECT_TRUE(file.cases[1].hasAcceleration);
  EXPECT_EQ(file.cases[2].name, "Gew\xC3\xB6lbe");
  EXPECT_EQ(file.cases[2].loads, "loads-Gew\xC3\xB6lbe.txt");
  EXPECT_EQ(file.cases[2].acceleration, (std::array<double, 3>{0.0, 0.1, -9810.0}));
  EXPECT_TRUE(file.combinations.empty());
}

// The example of a combination in the comments is one.
TEST(ImportCases, CombinationInTheCommentsCanBeTaken) {
  std::vector<ImportedCase> cases;
  NameCases({Case("dead load", 1.0), Case("wind", 1.0)}, cases);
  std::string text = CasesFileText("a.bdf", cases);
  for (const char* line : {"# [combination", "# factors"}) {
    const std::size_t at = text.find(line);
    ASSERT_NE(at, std::string::npos);
    text.erase(at, 2);
  }
  // A table in front of "structure" would take it in.
  const std::size_t begin = text.find("[combination"), end = text.find("structure");
  text = text.substr(end) + text.substr(begin, end - begin);
  CaseFile file;
  ReadCaseFile(text, file);
  ASSERT_EQ(file.combinations.size(), 1U);
  EXPECT_EQ(file.combinations[0].terms[0].name, "dead-load");
}

}  // namespace
}  // namespace kvx::test
