// Traps of mesh files, each in a small file written by hand.
#include "mesh/gmsh/import_gmsh.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "mesh/gmsh/sample_mesh.h"

namespace kvx::test {
namespace {

struct Imported {
  ImportModel model;
  ImportReport report;
};

Imported Import(const std::string& text) {
  Imported imported;
  ImportText(text, imported.model, imported.report);
  return imported;
}

std::string CountOf(const std::vector<std::string>& rows) { return std::to_string(rows.size()); }

std::string Section(const std::string& name, const std::vector<std::string>& rows) {
  std::string text = "$" + name + "\n" + CountOf(rows) + "\n";
  for (const std::string& row : rows) text += row + "\n";
  return text + "$End" + name + "\n";
}

const char* const Format22 = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n";
const char* const Format41 = "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n";

// Two squares side by side, with the nodes 1 to 6: 1 2 3 below, 4 5 6 above.
const std::vector<std::string> SixNodes = {"1 0 0 0", "2 1 0 0", "3 2 0 0",
                                           "4 0 1 0", "5 1 1 0", "6 2 1 0"};

std::string File22(const std::vector<std::string>& elements,
                   const std::vector<std::string>& names = {}) {
  return Format22 + (names.empty() ? "" : Section("PhysicalNames", names)) +
         Section("Nodes", SixNodes) + Section("Elements", elements);
}

const char* const SixNodes41 =
    "$Nodes\n1 6 1 6\n2 1 0 6\n1\n2\n3\n4\n5\n6\n0 0 0\n1 0 0\n2 0 0\n0 1 0\n1 1 0\n2 1 0\n"
    "$EndNodes\n";

std::string File41(const std::string& entities, const std::string& elements) {
  return Format41 + entities + SixNodes41 + "$Elements\n" + elements + "$EndElements\n";
}

// A surface and its border; dimension, tag, box, groups, border.
std::string Entities(const std::string& curve, const std::string& surface) {
  return "$Entities\n0 1 1 0\n1 0 0 0 1 0 0 " + curve + " 0\n1 0 0 0 2 1 0 " + surface +
         " 0\n$EndEntities\n";
}

std::string Nodes(const ImportModel& model, const ImportShell& shell) {
  std::string text;
  for (std::size_t k = 0; k < CornersOf(shell); ++k) {
    text += std::to_string(model.nodeNumbers[static_cast<std::size_t>(shell.nodes[k])]) + ' ';
  }
  return text;
}

std::string FirstShell(const Imported& imported) {
  return Nodes(imported.model, imported.model.shells.at(0));
}

std::vector<std::string> GroupNames(const ImportModel& model) {
  std::vector<std::string> names;
  for (const ImportGroup& group : model.groups) names.push_back(group.name);
  return names;
}

using Names = std::vector<std::string>;

TEST(ImportGmsh, AnElementOfTwoGroupsIsOneElement) {
  const Imported file = Import(File22(
      {"1 3 2 11 1 1 2 5 4", "2 3 2 12 1 1 2 5 4", "3 3 2 11 1 2 3 6 5", "4 3 2 12 1 2 3 6 5"}));
  ASSERT_EQ(file.model.shells.size(), 2U);
  EXPECT_EQ(file.model.shells[0].number, 1);
  EXPECT_EQ(file.model.shells[1].number, 3);
  ASSERT_EQ(file.model.groups.size(), 2U);
  for (const ImportGroup& group : file.model.groups) {
    EXPECT_EQ(group.shells, (std::vector<std::int32_t>{0, 1}));
    EXPECT_EQ(group.nodes, (std::vector<std::int32_t>{0, 1, 2, 3, 4, 5}));
  }
  EXPECT_TRUE(file.report.entries.empty());
}

// Other programs may give both rows the element's own number.
TEST(ImportGmsh, AnElementOfTwoGroupsMayHaveOneNumber) {
  const Imported file = Import(File22({"7 3 2 11 1 1 2 5 4", "7 3 2 12 1 1 2 5 4"}));
  ASSERT_EQ(file.model.shells.size(), 1U);
  EXPECT_EQ(GroupNames(file.model), (Names{"surface 11", "surface 12"}));
}

TEST(ImportGmsh, AnElementIsOnceInAGroup) {
  const Imported file = Import(File41(Entities("0", "2 5 5"), "1 1 1 1\n2 1 3 1\n1 1 2 5 4\n"));
  ASSERT_EQ(file.model.groups.size(), 1U);
  EXPECT_EQ(file.model.groups[0].shells, std::vector<std::int32_t>{0});
}

// The rows of the two groups need not stand together.
TEST(ImportGmsh, AnElementOfTwoGroupsIsOneElementWhereverItsRowsStand) {
  const Imported file = Import(File22(
      {"1 3 2 11 1 1 2 5 4", "2 3 2 11 1 2 3 6 5", "3 3 2 12 1 2 3 6 5", "4 3 2 12 1 1 2 5 4"}));
  ASSERT_EQ(file.model.shells.size(), 2U);
  EXPECT_EQ(file.model.groups.at(1).shells, (std::vector<std::int32_t>{0, 1}));
}

// Two elements at the same nodes stay two where they are of one group or of two surfaces; the
// check of the model that is written finds them.
TEST(ImportGmsh, DoubledElementsStayTwo) {
  EXPECT_EQ(Import(File22({"1 3 2 11 1 1 2 5 4", "2 3 2 11 1 1 2 5 4"})).model.shells.size(), 2U);
  EXPECT_EQ(Import(File22({"1 3 2 11 1 1 2 5 4", "2 3 2 12 2 1 2 5 4"})).model.shells.size(), 2U);
  // A reversed group is the group.
  EXPECT_EQ(Import(File22({"1 3 2 11 1 1 2 5 4", "2 3 2 -11 1 1 2 5 4"})).model.shells.size(), 2U);
  // The second of group 12 belongs to the second of group 11.
  const Imported twice = Import(File22(
      {"1 3 2 11 1 1 2 5 4", "2 3 2 12 1 1 2 5 4", "3 3 2 11 1 1 2 5 4", "4 3 2 12 1 1 2 5 4"}));
  ASSERT_EQ(twice.model.shells.size(), 2U);
  EXPECT_EQ(twice.model.shells[1].number, 3);
  EXPECT_EQ(twice.model.groups.at(1).shells, (std::vector<std::int32_t>{0, 1}));
}

// Same nodes, but another order of them: a crossed quadrilateral is another element.
TEST(ImportGmsh, ElementsOfOtherOrderOfNodesAreNotTheSame) {
  EXPECT_EQ(Import(File22({"1 3 2 11 1 1 2 5 4", "2 3 2 12 1 1 5 2 4"})).model.shells.size(), 2U);
}

// gmsh turns the rows of a group that is reversed, and leaves those of the others.
TEST(ImportGmsh, GroupsThatWantBothWaysRoundAreTold) {
  const Imported file = Import(
      File22({"1 3 2 11 1 1 4 5 2", "2 3 2 12 1 1 2 5 4", "3 1 2 13 1 2 1", "4 1 2 14 1 1 2"}));
  ASSERT_EQ(file.model.shells.size(), 1U);
  EXPECT_EQ(FirstShell(file), "1 4 5 2 ");
  EXPECT_EQ(file.model.beams.size(), 1U);
  EXPECT_EQ(file.model.beams.at(0).nodes, (std::array<std::int32_t, 2>{1, 0}));
  // $Nodes begins in line 4, its rows in line 6; the first element is line 15.
  EXPECT_EQ(Describe(file.report),
            "Limited: element type 3, 1 times, line 16: its groups have it both ways round; the "
            "first group's way is taken (element 2)\n"
            "Limited: element type 1, 1 times, line 18: its groups have it both ways round; the "
            "first group's way is taken (element 4)\n");
}

TEST(ImportGmsh, APointHasNoWayRound) {
  EXPECT_TRUE(Import(File22({"1 3 2 11 1 1 2 5 4", "2 15 2 9 3 3", "3 15 2 -8 3 3"}))
                  .report.entries.empty());
}

// The same of another first node is no turn.
TEST(ImportGmsh, AnElementThatBeginsElsewhereGoesTheSameWay) {
  EXPECT_TRUE(Import(File22({"1 3 2 11 1 1 2 5 4", "2 3 2 12 1 5 4 1 2"})).report.entries.empty());
  EXPECT_TRUE(Import(File22({"1 2 2 11 1 1 2 5", "2 2 2 12 1 5 1 2"})).report.entries.empty());
  EXPECT_EQ(Import(File22({"1 2 2 11 1 1 2 5", "2 2 2 12 1 2 1 5"})).report.entries.size(), 1U);
}

// As gmsh reads it: a file of format 2.2 with negative groups is saved turned round by it.
TEST(ImportGmsh, ANegativeGroupOfFormat22TurnsItsElements) {
  const Imported file = Import(File22({"1 3 2 -11 1 1 2 5 4", "2 2 2 -11 1 2 3 6"}));
  EXPECT_EQ(FirstShell(file), "1 4 5 2 ");
  EXPECT_EQ(Nodes(file.model, file.model.shells.at(1)), "2 6 3 ");
  EXPECT_EQ(GroupNames(file.model), Names{"surface 11"});
  // 1 2 5 4 of the group -12 is 1 4 5 2, too.
  const Imported both = Import(File22({"1 3 2 11 1 1 4 5 2", "2 3 2 -12 1 1 2 5 4"}));
  EXPECT_EQ(both.model.shells.size(), 1U);
  EXPECT_TRUE(both.report.entries.empty());
}

TEST(ImportGmsh, ElementsMayHaveAnyNumberOfTags) {
  const Imported file = Import(File22({"1 3 0 1 2 5 4", "2 3 1 11 2 3 6 5"}));
  ASSERT_EQ(file.model.shells.size(), 2U);
  ASSERT_EQ(GroupNames(file.model), (Names{"surface 11", "rest"}));
  EXPECT_EQ(file.model.groups[0].shells, std::vector<std::int32_t>{1});
  EXPECT_EQ(file.model.groups[1].shells, std::vector<std::int32_t>{0});
  EXPECT_EQ(file.model.groups[1].nodes, (std::vector<std::int32_t>{0, 1, 3, 4}));
}

TEST(ImportGmsh, PhysicalTag0IsNoGroup) {
  const Imported file = Import(File22({"1 15 2 0 1 1", "2 1 2 0 1 1 2", "3 3 2 0 1 1 2 5 4"}));
  EXPECT_EQ(file.model.shells.size(), 1U);
  EXPECT_TRUE(file.model.beams.empty());
  ASSERT_EQ(GroupNames(file.model), Names{"all"});
  EXPECT_EQ(file.model.groups[0].dimension, 2);
  EXPECT_EQ(Describe(file.report),
            "NoEffect: element type 15, 1 times, line 15: in no physical group: a point of the "
            "geometry (element 1)\n"
            "NoEffect: element type 1, 1 times, line 16: in no physical group: an edge of the "
            "geometry, no beam (element 2)\n");
}

TEST(ImportGmsh, AMeshOfLinesWithoutGroupsIsRefused) {
  const Imported file = Import(File22({"1 1 2 0 1 1 2"}));
  EXPECT_EQ(CountFate(file.report, Fate::Refused), 1U);
  EXPECT_EQ(file.report.entries.back().card, "$Elements");
  const Imported grouped = Import(File22({"1 1 2 4 1 1 2"}));
  EXPECT_EQ(CountFate(grouped.report, Fate::Refused), 0U);
  EXPECT_EQ(grouped.model.beams.size(), 1U);
}

// gmsh 4.8 writes the names, but no group of any element, with Mesh.SaveAll=1.
TEST(ImportGmsh, AFileOfFormat22ThatLostItsGroupsIsRefused) {
  const Imported file = Import(File22({"1 3 2 0 1 1 2 5 4"}, {"2 1 \"deck\""}));
  EXPECT_EQ(CountFate(file.report, Fate::Refused), 1U);
  EXPECT_NE(Describe(file.report).find("Mesh.SaveAll=1"), std::string::npos);
}

TEST(ImportGmsh, ANameWithoutElementsIsNoGroup) {
  const Imported file =
      Import(File22({"1 3 2 1 1 1 2 5 4"}, {"1 3 \"clamped\"", "2 1 \"deck\"", "3 1 \"hull\""}));
  EXPECT_EQ(GroupNames(file.model), Names{"deck"});
  EXPECT_EQ(Describe(file.report),
            "Lost: $PhysicalNames, 2 times, line 6: a physical group without elements that are "
            "taken (\"clamped\")\n");
}

TEST(ImportGmsh, GroupsOfOneNameAreToldApart) {
  const Imported file =
      Import(File22({"1 15 2 1 1 3", "2 1 2 1 1 1 2", "3 3 2 1 1 1 2 5 4", "4 3 2 2 1 2 3 6 5",
                     "5 2 2 3 2 1 2 5"},
                    {"0 1 \"tip\"", "1 1 \"deck\"", "2 1 \"deck\"", "2 2 \"web\"", "2 3 \"web\""}));
  EXPECT_EQ(GroupNames(file.model),
            (Names{"tip", "deck (lines)", "deck (surfaces)", "web (surfaces) (surface 2)",
                   "web (surfaces) (surface 3)"}));
}

TEST(ImportGmsh, AGroupWithoutNameHasItsTag) {
  const Imported file = Import(File22({"1 15 2 5 1 3", "2 1 2 2 1 1 2", "3 3 2 3 1 1 2 5 4"}));
  EXPECT_EQ(GroupNames(file.model), (Names{"point 5", "line 2", "surface 3"}));
  EXPECT_EQ(file.model.groups[0].source, "physical point 5");
  EXPECT_EQ(file.model.groups[0].nodes, std::vector<std::int32_t>{2});
  EXPECT_EQ(file.model.groups[1].beams, std::vector<std::int32_t>{0});
  EXPECT_EQ(file.model.groups[2].dimension, 2);
}

TEST(ImportGmsh, AnEmptyNameIsNone) {
  EXPECT_EQ(GroupNames(Import(File22({"1 3 2 4 1 1 2 5 4"}, {"2 4 \"\""})).model),
            Names{"surface 4"});
}

TEST(ImportGmsh, AGroupKnowsTheLineOfItsFirstElement) {
  const Imported file = Import(File22({"1 3 2 4 1 1 2 5 4", "2 3 2 3 1 2 3 6 5", "3 1 2 3 1 1 2"}));
  ASSERT_EQ(GroupNames(file.model), (Names{"line 3", "surface 3", "surface 4"}));
  EXPECT_EQ(file.model.groups[0].place.line, 17U);
  EXPECT_EQ(file.model.groups[1].place.line, 16U);
  EXPECT_EQ(file.model.groups[2].place.line, 15U);
}

// All that is left of the group "clamped" is an element that cannot be taken.
TEST(ImportGmsh, AGroupOfRefusedElementsAloneIsNone) {
  const Imported file =
      Import(File22({"1 3 2 1 1 1 2 5 4", "2 1 2 5 1 1 9"}, {"1 5 \"clamped\"", "2 1 \"deck\""}));
  EXPECT_EQ(GroupNames(file.model), Names{"deck"});
}

// A name that looks like the ones that are made up.
TEST(ImportGmsh, NamesAreUniqueWhateverTheyAre) {
  const Imported file = Import(File22({"1 1 2 1 1 1 2", "2 3 2 1 1 1 2 5 4", "3 3 2 2 1 2 3 6 5"},
                                      {"1 1 \"a\"", "2 1 \"a\"", "2 2 \"a (lines)\""}));
  const Names names = GroupNames(file.model);
  ASSERT_EQ(names.size(), 3U);
  EXPECT_NE(names[0], names[2]);
  EXPECT_EQ(names[1], "a (surfaces)");
  const Imported worse =
      Import(File22({"1 1 2 1 1 1 2", "2 3 2 1 1 1 2 5 4", "3 3 2 2 1 2 3 6 5", "4 2 2 3 2 1 2 5"},
                    {"1 1 \"a\"", "2 1 \"a\"", "2 2 \"a (lines)\"", "2 3 \"a (lines) (line 1)\""}));
  EXPECT_EQ(GroupNames(worse.model), (Names{"a (lines) (line 1)", "a (surfaces)",
                                            "a (lines) (surface 2)", "a (lines) (line 1)'"}));
}

TEST(ImportGmsh, NamesMayHoldBlanksQuotesAndOtherLetters) {
  // The word for girder with its umlaut, as Latin-1 and as UTF-8; a tabulator.
  const Imported file =
      Import(File22({"1 3 2 1 1 1 2 5 4", "2 3 2 2 1 2 3 6 5", "3 2 2 3 2 1 2 5"},
                    {"2 1 \"Tr\xE4ger\"", "2 2 \"Tr\xC3\xA4ger \"2\" \"", "2 3 \"a\tb\""}));
  EXPECT_EQ(GroupNames(file.model), (Names{"Tr\xC3\xA4ger", "Tr\xC3\xA4ger \"2\" ", "a?b"}));
}

// No character of UTF-8 begins with the byte 84.
TEST(ImportGmsh, BytesThatOnlyGoOnAreNoUtf8) {
  EXPECT_EQ(GroupNames(Import(File22({"1 3 2 1 1 1 2 5 4"}, {"2 1 \"\x84\x84\""})).model),
            Names{"\xC2\x84\xC2\x84"});
}

TEST(ImportGmsh, AGroupOfTwoNamesStops) {
  EXPECT_EQ(StopOf(File22({"1 3 2 1 1 1 2 5 4"}, {"2 1 \"a\"", "2 1 \"b\""})),
            "\"plate.msh\", line 7: physical surface 1 has two names, \"a\" and \"b\"");
}

TEST(ImportGmsh, NodeNumbersMayHaveGapsOfAnySize) {
  const std::string text =
      std::string(Format22) +
      Section("Nodes", {"9223372036854775807 0 0 0", "3 1 0 0", "4000000000000 0 1 0"}) +
      Section("Elements", {"7 2 2 1 1 9223372036854775807 3 4000000000000"});
  const Imported file = Import(text);
  EXPECT_EQ(file.model.shells.at(0).nodes, (std::array<std::int32_t, 4>{0, 1, 2, -1}));
  EXPECT_EQ(file.model.nodeNumbers[0], 9223372036854775807);
}

TEST(ImportGmsh, ANodeThatStandsTwiceStops) {
  for (const char* number : {"1", "4000000000000"}) {
    const std::string row = std::string(number) + " 0 0 0";
    const std::string text = std::string(Format22) + Section("Nodes", {row, "2 1 0 0", row}) +
                             Section("Elements", {"7 2 2 1 1 1 2 3"});
    EXPECT_EQ(StopOf(text),
              std::string("\"plate.msh\", line 8: node ") + number + " stands twice in the file");
  }
}

TEST(ImportGmsh, AnElementThatStandsTwiceStops) {
  EXPECT_EQ(StopOf(File22({"1 3 2 1 1 1 2 5 4", "1 3 2 1 1 2 3 6 5"})),
            "\"plate.msh\", line 16: element 1 stands twice in the file");
}

TEST(ImportGmsh, AnElementOfMissingNodesIsRefused) {
  const Imported file = Import(File22({"1 3 2 1 1 1 2 5 4", "2 3 2 1 1 2 3 7 5", "3 1 2 2 1 0 1"}));
  EXPECT_EQ(Describe(file.report),
            "Refused: element type 3, 1 times, line 16: a node of it does not exist (element 2, "
            "node 7)\n"
            "Refused: element type 1, 1 times, line 17: a node of it does not exist (element 3, "
            "node 0)\n");
}

TEST(ImportGmsh, AQuadrilateralWithTwoEqualNeighboursIsATriangle) {
  const char* const rows[][2] = {
      {"1 1 2 5", "1 2 5 "}, {"1 2 2 5", "1 2 5 "}, {"1 2 5 5", "1 2 5 "}, {"1 2 5 1", "1 2 5 "}};
  for (const auto& [nodes, expected] : rows) {
    const Imported file = Import(File22({std::string("1 3 2 1 1 ") + nodes}));
    EXPECT_EQ(FirstShell(file), expected);
    EXPECT_EQ(Describe(file.report),
              "Limited: element type 3, 1 times, line 15: two of its corners are one node: taken "
              "as a triangle (element 1)\n");
  }
}

TEST(ImportGmsh, OtherElementsWithANodeTwiceAreRefused) {
  for (const char* row :
       {"1 3 2 1 1 1 2 1 4", "1 3 2 1 1 1 2 5 2", "1 3 2 1 1 1 1 1 2", "1 3 2 1 1 1 1 2 2",
        "1 3 2 1 1 1 2 2 1", "1 2 2 1 1 1 2 1", "1 2 2 1 1 1 1 2", "1 1 2 1 1 4 4"}) {
    const Imported file = Import(File22({row, "2 3 2 1 1 1 2 5 4"}));
    EXPECT_EQ(CountFate(file.report, Fate::Refused), 1U) << row;
    EXPECT_EQ(file.model.shells.size(), 1U) << row;
    EXPECT_TRUE(file.model.beams.empty()) << row;
  }
}

TEST(ImportGmsh, HigherOrderIsRefusedWithARemedy) {
  const Imported file =
      Import(File22({"1 8 2 1 1 1 2 3", "2 9 2 1 1 1 2 3 4 5 6", "3 10 2 1 1 1 2 3 4 5 6 1 2 3",
                     "4 16 2 1 1 1 2 3 4 5 6 1 2"}));
  EXPECT_EQ(CountFate(file.report, Fate::Refused), 4U);
  ASSERT_EQ(file.report.entries.size(), 4U);
  for (const ReportEntry& entry : file.report.entries) {
    EXPECT_NE(entry.reason.find("gmsh -order 1"), std::string::npos);
  }
  EXPECT_EQ(file.report.entries[1].card, "element type 9");
  EXPECT_EQ(file.report.entries[1].first.line, 16U);
}

TEST(ImportGmsh, SolidsAreLost) {
  const Imported file = Import(File22({"1 4 2 1 1 1 2 3 4", "2 5 2 1 1 1 2 3 4 5 6 1 2",
                                       "3 4 2 1 1 1 2 3 5", "4 3 2 1 1 1 2 5 4"}));
  EXPECT_EQ(Describe(file.report),
            "Lost: element type 4, 2 times, line 15: solid elements have no counterpart (element "
            "1)\n"
            "Lost: element type 5, 1 times, line 16: solid elements have no counterpart (element "
            "2)\n");
  EXPECT_EQ(file.model.shells.size(), 1U);
}

TEST(ImportGmsh, UnknownTypesAreRefused) {
  const Imported file =
      Import(File22({"1 36 2 1 1 1 2 3 4 5 6 1 2 3 4 5 6 1 2 3 4", "2 3 2 1 1 1 2 5 4"}));
  EXPECT_EQ(CountFate(file.report, Fate::Refused), 1U);
  EXPECT_EQ(file.report.entries.at(0).card, "element type 36");
  EXPECT_EQ(file.model.shells.size(), 1U);
}

TEST(ImportGmsh, OtherVersionsStopWithARemedy) {
  for (const char* version : {"4 0 8", "4.0 0 8", "2 0 8", "2.1 0 8", "4.2 0 8"}) {
    const std::string stop = StopOf(std::string("$MeshFormat\n") + version + "\n$EndMeshFormat\n");
    EXPECT_EQ(stop.substr(0, 21), "\"plate.msh\", line 2: ") << version;
    EXPECT_NE(stop.find("Mesh.MshFileVersion=4.1"), std::string::npos) << stop;
  }
  const std::string stop = StopOf("$NOD\n1\n1 0 0 0\n$ENDNOD\n");
  EXPECT_NE(stop.find("format 1.0"), std::string::npos) << stop;
  EXPECT_NE(stop.find("-format msh41"), std::string::npos) << stop;
}

TEST(ImportGmsh, WhatIsNoMeshStops) {
  for (const char* text :
       {"", "\n\n", "solid cube\n", "$Nodes\n0\n$EndNodes\n", "$", "$$\n", "$EndMeshFormat\n",
        "$MeshFormat\n", "$MeshFormat\n2.2 0\n", "$MeshFormat\n2.2 2 8\n$EndMeshFormat\n",
        "$MeshFormat\nx 0 8\n$EndMeshFormat\n",
        "$MeshFormat\n2.2 1 4\n\1\0\0\0\n$EndMeshFormat\n"}) {
    EXPECT_EQ(StopOf(text).substr(0, 18), "\"plate.msh\", line ") << text;
  }
}

TEST(ImportGmsh, SectionsThatSayNothingOfTheStructureAreToldAndLeftOut) {
  const std::string view = "$NodeData\n1\n\"a view\"\n1\n0\n3\n0\n1\n1\n1 7.5\n$EndNodeData\n";
  const Imported file = Import(
      "$Comments\n$Nodes of old\n$EndComment\n$EndComments, they say\nand $EndComments\n"
      "$EndComments\n" +
      File22({"1 3 2 1 1 1 2 5 4"}) + view + view +
      "$Periodic\n0\n$EndPeriodic\n$Springs\n1 2 3\n$EndSprings\n");
  EXPECT_EQ(Describe(file.report),
            "NoEffect: $Comments, 1 times, line 1: comments\n"
            "NoEffect: $NodeData, 2 times, line 23: values of a post-processing view\n"
            "NoEffect: $Periodic, 1 times, line 45: tells which nodes correspond to each other, "
            "and ties none\n"
            "Lost: $Springs, 1 times, line 48: unknown section\n");
  EXPECT_EQ(file.report.cards.at("$NodeData").count, 2U);
}

TEST(ImportGmsh, AnEndMarkWithoutSectionStops) {
  EXPECT_EQ(StopOf(File22({"1 3 2 1 1 1 2 5 4"}) + "$EndNodes\n"),
            "\"plate.msh\", line 17: here a section must begin, with a line such as $Nodes");
}

TEST(ImportGmsh, ASectionLeftOutThatHasNoEndStops) {
  EXPECT_EQ(StopOf(File22({"1 3 2 1 1 1 2 5 4"}) + "$NodeData\n1\n$EndNodeDat\n"),
            "\"plate.msh\", line 20: the file ends within $NodeData: $EndNodeData is missing");
}

TEST(ImportGmsh, ASecondSectionOfNodesOrElementsStops) {
  const std::string file = File22({"1 3 2 1 1 1 2 5 4"});
  EXPECT_NE(StopOf(file + Section("Nodes", {"7 0 0 0"})).find("second section"), std::string::npos);
  EXPECT_NE(StopOf(file + Section("Elements", {"2 3 2 1 1 2 3 6 5"})).find("second section"),
            std::string::npos);
  EXPECT_NE(StopOf(file + Format22).find("second $MeshFormat"), std::string::npos);
}

// Counts that the rows do not bear out.
TEST(ImportGmsh, CountsThatAreWrongStop) {
  std::string more = File22({"1 3 2 1 1 1 2 5 4", "2 3 2 1 1 2 3 6 5"});
  const std::size_t count = more.find("$Elements\n2") + 10;
  more[count] = '1';
  EXPECT_EQ(StopOf(more).substr(0, 20), "\"plate.msh\", line 16");
  more[count] = '3';
  EXPECT_EQ(StopOf(more).substr(0, 20), "\"plate.msh\", line 17");
  // Not believed, nor reserved for.
  more.insert(count, "99999999999");
  EXPECT_EQ(StopOf(more),
            "\"plate.msh\", line 14: $Elements announces 999999999993 elements; the rest of the "
            "file cannot hold them");
}

TEST(ImportGmsh, RowsOfOtherLengthStop) {
  for (const char* row :
       {"1 3 2 1 1 1 2 5", "1 3 2 1 1 1 2 5 4 4", "1 3 2 1 1 1 2 5 x", "1 3 2 1 1 1 2 5 4.0",
        "1 3 -1 1 1 1 2 5 4", "1 3 -1 1 2 5 4", "1 3 2 1 1 1 2 5 -4", "1 3 2 1 99999999999 1 2 5 4",
        "1 3 2 -99999999999 1 1 2 5 4"}) {
    EXPECT_EQ(StopOf(File22({row})).substr(0, 20), "\"plate.msh\", line 15") << row;
  }
  for (const char* row : {"1 0 0", "1 0 0 0 0", "1 0 0 nan", "1 0 0 1e999", "1.5 0 0 0", "0 0 0 0",
                          "-1 0 0 0", "1 0 0 0,5"}) {
    const std::string text =
        std::string(Format22) + Section("Nodes", {row}) + Section("Elements", {});
    EXPECT_EQ(StopOf(text).substr(0, 19), "\"plate.msh\", line 6") << row;
  }
}

TEST(ImportGmsh, GroupsOfFormat41StandAtTheEntities) {
  const Imported file = Import(
      File41(Entities("1 4", "2 6 5"), "2 3 1 3\n1 1 1 1\n3 1 2\n2 1 3 2\n1 1 2 5 4\n2 2 3 6 5\n"));
  EXPECT_EQ(GroupNames(file.model), (Names{"line 4", "surface 5", "surface 6"}));
  EXPECT_EQ(file.model.groups[0].beams, std::vector<std::int32_t>{0});
  EXPECT_EQ(file.model.groups[2].shells, (std::vector<std::int32_t>{0, 1}));
  EXPECT_TRUE(file.report.entries.empty());
}

TEST(ImportGmsh, ANegativeGroupOfFormat41TurnsItsElements) {
  const Imported file =
      Import(File41(Entities("1 -4", "2 -6 -5"),
                    "3 3 1 3\n1 1 1 1\n3 1 2\n2 1 3 1\n1 1 2 5 4\n2 1 2 1\n2 2 3 6\n"));
  EXPECT_EQ(GroupNames(file.model), (Names{"line 4", "surface 5", "surface 6"}));
  EXPECT_EQ(FirstShell(file), "1 4 5 2 ");
  EXPECT_EQ(Nodes(file.model, file.model.shells.at(1)), "2 6 3 ");
  EXPECT_EQ(file.model.beams.at(0).nodes, (std::array<std::int32_t, 2>{1, 0}));
  EXPECT_TRUE(file.report.entries.empty());
}

TEST(ImportGmsh, GroupsOfFormat41ThatWantBothWaysRoundAreTold) {
  const std::string elements = "1 1 1 1\n2 1 3 1\n1 1 2 5 4\n";
  const Imported reversed = Import(File41(Entities("0", "2 -6 5"), elements));
  EXPECT_EQ(FirstShell(reversed), "1 4 5 2 ");
  EXPECT_EQ(CountFate(reversed.report, Fate::Limited), 1U);
  const Imported forward = Import(File41(Entities("0", "2 6 -5"), elements));
  EXPECT_EQ(FirstShell(forward), "1 2 5 4 ");
  EXPECT_EQ(CountFate(forward.report, Fate::Limited), 1U);
}

TEST(ImportGmsh, Format41NeedsNoEntities) {
  const Imported file = Import(File41("", "1 1 1 1\n2 1 3 1\n1 1 2 5 4\n"));
  EXPECT_EQ(GroupNames(file.model), Names{"all"});
}

TEST(ImportGmsh, ElementsOnAnEntityThatIsMissingStop) {
  EXPECT_NE(StopOf(File41(Entities("0", "1 5"), "1 1 1 1\n2 2 3 1\n1 1 2 5 4\n"))
                .find("entity 2 of dimension 2 is not in $Entities"),
            std::string::npos);
  // A quadrilateral on the curve 1.
  EXPECT_NE(
      StopOf(File41(Entities("0", "1 5"), "1 1 1 1\n1 1 3 1\n1 1 2 5 4\n")).find("dimension 1"),
      std::string::npos);
  // Entities that come too late.
  EXPECT_NE(StopOf(File41("", "1 1 1 1\n2 1 3 1\n1 1 2 5 4\n") + Entities("0", "1 5"))
                .find("behind $Elements"),
            std::string::npos);
}

TEST(ImportGmsh, CountsOfBlocksThatAreWrongStop) {
  const std::string rows = "1 1 2 5 4\n2 2 3 6 5\n";
  const auto stopOf = [&](const std::string& head) { return StopOf(File41("", head + rows)); };
  EXPECT_EQ(stopOf("1 2 1 2\n2 1 3 2\n"), "");
  EXPECT_NE(stopOf("1 3 1 2\n2 1 3 2\n").find("announces 3 elements, its blocks have 2"),
            std::string::npos);
  EXPECT_NE(stopOf("1 1 1 2\n2 1 3 2\n").find("more elements than it announces"),
            std::string::npos);
  EXPECT_NE(stopOf("1 1 1 2\n2 1 3 1\n").find("$EndElements is expected"), std::string::npos);
  EXPECT_NE(stopOf("2 2 1 2\n2 1 3 2\n"), "");
  const auto nodes = [](const std::string& head) {
    return StopOf(Format41 + std::string("$Nodes\n") + head + "7\n0 0 0\n$EndNodes\n");
  };
  EXPECT_NE(nodes("1 2 7 7\n2 1 0 1\n").find("announces 2 nodes, its blocks have 1"),
            std::string::npos);
  EXPECT_NE(nodes("1 0 7 7\n2 1 0 1\n").find("more nodes than it announces"), std::string::npos);
}

// A node on a curve has one parameter behind its coordinates, one on a surface two.
TEST(ImportGmsh, NodesOfFormat41MayHaveParameters) {
  const std::string text = std::string(Format41) +
                           "$Nodes\n3 4 1 4\n0 1 1 1\n1\n0 0 0\n1 1 1 1\n2\n1 0 0 0.5\n"
                           "2 1 1 2\n3\n4\n1 1 0 0.25 0.75\n0 1 0 0.1 0.2\n$EndNodes\n"
                           "$Elements\n1 1 1 1\n2 1 3 1\n1 1 2 3 4\n$EndElements\n";
  const Imported file = Import(text);
  ASSERT_EQ(file.model.nodes.size(), 4U);
  EXPECT_EQ(file.model.nodes[2].y, 1.0);
  EXPECT_EQ(file.model.nodes[3].x, 0.0);
  EXPECT_EQ(file.model.nodes[3].y, 1.0);
}

TEST(ImportGmsh, BlocksOfNodesThatCannotBeStop) {
  for (const char* block : {"2 1 2 1", "2 1 -1 1", "4 1 0 1", "-1 1 0 1"}) {
    const std::string stop = StopOf(std::string(Format41) + "$Nodes\n1 1 1 1\n" + block +
                                    "\n1\n0 0 0\n$EndNodes\n$Elements\n0 0 0 0\n$EndElements\n");
    EXPECT_EQ(stop.substr(0, 20), "\"plate.msh\", line 6:") << block << stop;
  }
}

// The rows are those that gmsh 4.8 writes with Mesh.SaveParametric=1: entity behind the
// coordinates, then its parameters; none for a point and within a volume.
TEST(ImportGmsh, NodesOfFormat22MayHaveParameters) {
  const std::string text = std::string(Format22) +
                           Section("ParametricNodes", {"1 0 0 0 0 1", "2 1 0 0 1 11 0.5",
                                                       "5 1 1 0 2 3 0.5 0.25", "4 0 1 0 3 1"}) +
                           Section("Elements", {"1 3 2 1 1 1 2 5 4"});
  const Imported file = Import(text);
  ASSERT_EQ(file.model.nodes.size(), 4U);
  EXPECT_EQ(file.model.nodes[3].y, 1.0);
  EXPECT_EQ(FirstShell(file), "1 2 5 4 ");
}

// Partitioned: surface 1 became the surfaces 2 and 3, with a curve 7 between them, to which gmsh
// gives the groups of surface 1.
std::string Partitioned(const std::string& ghosts, const std::string& entities,
                        const std::string& elements) {
  return File41(Entities("0", "1 5") + "$PartitionedEntities\n2\n" + ghosts + "\n" + entities +
                    "$EndPartitionedEntities\n",
                elements);
}
const char* const Halves =
    "0 1 2 0\n7 2 1 2 1 2 1 0 0 1 1 0 1 5 0\n2 2 1 1 1 0 0 0 1 1 0 1 5 0\n"
    "3 2 1 1 2 1 0 0 2 1 0 1 5 0\n";

TEST(ImportGmsh, PartitionsAreOneModelWithoutTheLinesBetweenThem) {
  const Imported file = Import(Partitioned(
      "0", Halves, "3 3 1 3\n1 7 1 1\n3 2 5\n2 2 3 1\n1 1 2 5 4\n2 3 3 1\n2 2 3 6 5\n"));
  EXPECT_EQ(file.model.shells.size(), 2U);
  EXPECT_TRUE(file.model.beams.empty());
  EXPECT_EQ(GroupNames(file.model), Names{"surface 5"});
  EXPECT_EQ(file.model.groups[0].shells, (std::vector<std::int32_t>{0, 1}));
  EXPECT_EQ(CountFate(file.report, Fate::Refused), 0U) << Describe(file.report);
  EXPECT_NE(Describe(file.report).find("lies between partitions"), std::string::npos);
}

// As gmsh writes the file of partition 1: the ghosts of partition 2 lie on the surface 4.
TEST(ImportGmsh, AFileOfOnePartitionIsRefusedAndGhostsAreLeftOut) {
  const Imported file = Import(Partitioned(
      "2\n9 2\n4 1", Halves, "3 3 1 3\n1 7 1 1\n3 2 5\n2 2 3 1\n1 1 2 5 4\n2 4 3 1\n2 2 3 6 5\n"));
  EXPECT_EQ(file.model.shells.size(), 1U);
  EXPECT_EQ(CountFate(file.report, Fate::Refused), 1U);
  EXPECT_NE(Describe(file.report).find("holds one partition"), std::string::npos);
  EXPECT_NE(Describe(file.report).find("a copy of an element"), std::string::npos);
}

// Number of partitions, partitions; negative: a ghost there.
TEST(ImportGmsh, PartitionsOfFormat22) {
  const auto refused = [](const std::string& first, const std::string& second) {
    return CountFate(
        Import(File22({"1 3 " + first + " 1 2 5 4", "2 3 " + second + " 2 3 6 5"})).report,
        Fate::Refused);
  };
  EXPECT_EQ(refused("4 1 1 1 1", "4 1 1 1 2"), 0U);
  EXPECT_EQ(refused("4 1 1 1 2", "4 1 1 1 2"), 1U);
  EXPECT_EQ(refused("4 1 1 1 1", "5 1 1 2 2 -1"), 1U);
  EXPECT_EQ(refused("4 1 1 1 1", "5 1 1 2 2 -3"), 0U);
  // What stands behind the partitions is none.
  EXPECT_EQ(refused("5 1 1 1 1 7", "5 1 1 1 2 7"), 0U);
  EXPECT_EQ(refused("3 1 1 0", "3 1 1 0"), 0U);
  EXPECT_EQ(refused("2 1 1", "2 1 1"), 0U);
}

TEST(ImportGmsh, BinaryFilesStopAtAByte) {
  const std::string text = WriteSample(MakeSampleMesh(), {true, true, false});
  const std::string stop = StopOf(text.substr(0, text.find("$Elements") + 100));
  EXPECT_EQ(stop.substr(0, 18), "\"plate.msh\": byte ") << stop;
}

TEST(ImportGmsh, ABinaryFileWithoutItsNumber1Stops) {
  for (const char one : {'\0', '\2'}) {
    std::string text = WriteSample(MakeSampleMesh(), {true, true, false});
    text[text.find("4.1 1 8\n") + 8] = one;
    EXPECT_NE(StopOf(text).find("order of the bytes"), std::string::npos);
  }
}

// A block of format 2.2 begins with its type, count and number of tags; the mesh has seven rows.
TEST(ImportGmsh, ABinaryBlockOfWrongCountStops) {
  const std::string text = WriteSample(MakeSampleMesh(), {false, true, false});
  const std::size_t block = text.find("$Elements\n7\n") + 12;
  for (const char count : {'\0', '\7', '\10'}) {
    std::string wrong = text;
    wrong[block + 4] = count;
    const bool isAnnounced = count == '\7';
    EXPECT_EQ(StopOf(wrong).find("a block has") == std::string::npos, isAnnounced);
    EXPECT_NE(StopOf(wrong), "");
  }
}

TEST(ImportGmsh, NumbersThatCannotBeStopInAllForms) {
  for (const SampleForm& form : AllForms()) {
    SampleMesh infinite = MakeSampleMesh();
    infinite.nodes[1].at[2] = std::numeric_limits<double>::infinity();
    EXPECT_NE(StopOf(WriteSample(infinite, form)), "") << FormName(form);
    SampleMesh negative = MakeSampleMesh();
    negative.nodes[1].number = -20;
    EXPECT_NE(StopOf(WriteSample(negative, form)), "") << FormName(form);
    SampleMesh space = MakeSampleMesh();
    space.names[0].dimension = 4;
    EXPECT_NE(StopOf(WriteSample(space, form)), "") << FormName(form);
  }
}

TEST(ImportGmsh, ACountHasALineOfItsOwn) {
  std::string text = File22({"1 3 2 1 1 1 2 5 4"});
  text.insert(text.find("$Elements\n1") + 11, " 1");
  EXPECT_EQ(StopOf(text).substr(0, 20), "\"plate.msh\", line 14");
}

// Nobody knows how many nodes an unknown type has.
TEST(ImportGmsh, AnUnknownTypeEndsABinaryFile) {
  for (const SampleForm& form : AllForms()) {
    SampleMesh mesh = MakeSampleMesh();
    mesh.elements[3].type = 36;
    const std::string text = WriteSample(mesh, form);
    if (!form.isBinary) {
      // Format 2.2 has it twice, for two groups.
      EXPECT_EQ(CountFate(Import(text).report, Fate::Refused), form.is41 ? 1U : 2U);
    } else {
      EXPECT_NE(StopOf(text).find("element type 36: unknown type"), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace kvx::test
