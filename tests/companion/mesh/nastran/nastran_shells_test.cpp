// Shells with PSHELL and MAT1. Expected values stand in the decks.
#include "mesh/nastran/nastran_shells.h"

#include <gtest/gtest.h>

#include "mesh/nastran/read_structure.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;

// Nodes 1 to 4 round a square; node 5 beside it.
const std::string Square =
    "GRID,1,,0.,0.,0.\nGRID,2,,1.,0.,0.\nGRID,3,,1.,1.,0.\nGRID,4,,0.,1.,0.\nGRID,5,,2.,0.,0.\n";
const std::string Plate = "PSHELL,10,7,12.,7,,7\nMAT1,7,206000.,,.3,7.85-9\n";

TEST(NastranShells, QuadrilateralsAndTriangles) {
  StructureOfText s;
  ReadStructureText(Square + Plate + "CQUAD4,100,10,1,2,3,4\nCTRIA3,200,10,2,5,3,45.\n" +
                        "CQUADR,300,10,4,3,2,1\nCTRIAR,400,10,5,3,2\n",
                    s);
  EXPECT_EQ(Entries(s.read.report), Texts{});
  ASSERT_EQ(s.model.shells.size(), 4U);
  EXPECT_EQ(s.model.typeNames, (Texts{"CQUAD4", "CTRIA3", "CQUADR", "CTRIAR"}));
  const ImportShell& quad = s.model.shells[0];
  EXPECT_EQ(quad.number, 100);
  EXPECT_EQ(quad.nodes, (std::array<std::int32_t, 4>{0, 1, 2, 3}));
  EXPECT_EQ(s.model.shells[1].nodes, (std::array<std::int32_t, 4>{1, 4, 2, -1}));
  EXPECT_EQ(s.model.shells[1].type, 1);
  EXPECT_EQ(s.model.thicknesses.at(static_cast<std::size_t>(quad.thickness)).TK, 12.0);
  const ImportMaterial& steel = s.model.materials.at(static_cast<std::size_t>(quad.material));
  EXPECT_EQ(steel.name, "MAT1 7");
  EXPECT_EQ(steel.values.E, 206000.0);
  EXPECT_EQ(steel.values.Mu, 0.3);
  EXPECT_EQ(steel.values.Density, 7.85e-9);
  EXPECT_EQ(s.numbers.shells.at(400), 3);
  ASSERT_EQ(s.model.groups.size(), 1U);
  EXPECT_EQ(s.model.groups[0].name, "PSHELL 10");
  EXPECT_EQ(s.model.groups[0].shells, (std::vector<std::int32_t>{0, 1, 2, 3}));
  EXPECT_EQ(s.model.groups[0].nodes, (std::vector<std::int32_t>{0, 1, 2, 3, 4}));
  EXPECT_EQ(s.model.groups[0].place.line, 6U);
}

TEST(NastranShells, BlankPropertyIsTheElementsNumber) {
  StructureOfText s;
  ReadStructureText(Square + Plate + "CQUAD4,10,,1,2,3,4\n", s);
  ASSERT_EQ(s.model.shells.size(), 1U);
  EXPECT_EQ(s.model.groups[0].name, "PSHELL 10");
}

double ThicknessOf(const std::string& text, Texts& entries) {
  StructureOfText s;
  ReadStructureText(Square + Plate + text, s);
  entries = Entries(s.read.report);
  const std::int32_t row = s.model.shells.at(0).thickness;
  return row < 0 ? -1.0 : s.model.thicknesses[static_cast<std::size_t>(row)].TK;
}

TEST(NastranShells, CornersMayGiveTheThickness) {
  Texts entries;
  EXPECT_EQ(ThicknessOf("CQUAD4,1,10,1,2,3,4\n,,,8.,8.,8.,8.\n", entries), 8.0);
  EXPECT_EQ(entries, Texts{});
  // TFLAG 1: shares of T = 12.
  EXPECT_EQ(ThicknessOf("CQUAD4,1,10,1,2,3,4\n,,1,.5,.5,.5,.5\n", entries), 6.0);
  EXPECT_EQ(entries, Texts{});
  EXPECT_EQ(ThicknessOf("CTRIA3,1,10,1,2,3\n,,,9.,9.,9.\n", entries), 9.0);
  EXPECT_EQ(entries, Texts{});
  // Blank corners have the plate's: (8 + 12 + 12 + 12) / 4 = 11; shares: 12 (0.5 + 1 + 1 + 1) / 4.
  const Texts mean{
      "CQUAD4 limited 1: its corners differ in thickness; their mean is taken (CQUAD4 1)"};
  EXPECT_EQ(ThicknessOf("CQUAD4,1,10,1,2,3,4\n,,,8.\n", entries), 11.0);
  EXPECT_EQ(entries, mean);
  EXPECT_EQ(ThicknessOf("CQUAD4,1,10,1,2,3,4\n,,1,.5\n", entries), 10.5);
  EXPECT_EQ(entries, mean);
}

TEST(NastranShells, ElementsGiveTheThicknessWherePshellHasNone) {
  StructureOfText s;
  ReadStructureText(Square + "PSHELL,10,7,,7,,7\nMAT1,7,206000.,,.3\n" +
                        "CQUAD4,1,10,1,2,3,4\n,,,5.,5.,5.,5.\nCTRIA3,2,10,2,5,3\n",
                    s);
  EXPECT_EQ(s.model.thicknesses.at(static_cast<std::size_t>(s.model.shells.at(0).thickness)).TK,
            5.0);
  EXPECT_EQ(Entries(s.read.report),
            Texts{"CTRIA3 refused 1: neither the element nor its PSHELL has a thickness above 0 "
                  "(CTRIA3 2)"});
}

TEST(NastranShells, OffsetPlatesLieOnTheirNodes) {
  Texts entries;
  ThicknessOf("CQUAD4,1,10,1,2,3,4,,6.\n", entries);
  EXPECT_EQ(entries,
            Texts{"CQUAD4 limited 1: its offset (ZOFFS) is left out: the plate lies on its "
                  "nodes (CQUAD4 1)"});
  ThicknessOf("CTRIA3,1,10,1,2,3,,6.\n", entries);
  EXPECT_EQ(entries,
            Texts{"CTRIA3 limited 1: its offset (ZOFFS) is left out: the plate lies on its "
                  "nodes (CTRIA3 1)"});
  ThicknessOf("CQUAD4,1,10,1,2,3,4,30.,0.\n", entries);
  EXPECT_EQ(entries, Texts{});
}

// A map file gives such elements their thickness: what the cards say of it is not in the model.
TEST(NastranShells, OffsetsAndThicknessesWithoutAPlateAreTold) {
  const auto entriesOf = [](const std::string& element) {
    StructureOfText s;
    ReadStructureText(Square + "PCOMP,10\n,7,1.,0.,YES\nMAT1,7,206000.,,.3\n" + element, s);
    EXPECT_EQ(s.model.shells.size(), 1U);
    Texts entries;
    for (const ReportEntry& entry : s.read.report.entries) {
      if (entry.fate == Fate::Limited) entries.push_back(entry.card + ": " + entry.reason);
    }
    return entries;
  };
  const std::string offset = ": its offset (ZOFFS) is left out: the plate lies on its nodes";
  const std::string thickness =
      ": its property has no counterpart: its thicknesses (T1 and others) are left out";
  EXPECT_EQ(entriesOf("CQUAD4,1,10,1,2,3,4,,7.\n"), Texts{"CQUAD4" + offset});
  EXPECT_EQ(entriesOf("CTRIA3,1,10,1,2,3,,7.\n"), Texts{"CTRIA3" + offset});
  EXPECT_EQ(entriesOf("CQUAD4,1,10,1,2,3,4\n,,,,,,5.\n"), Texts{"CQUAD4" + thickness});
  EXPECT_EQ(entriesOf("CTRIA3,1,10,1,2,3\n,,,5.\n"), Texts{"CTRIA3" + thickness});
  EXPECT_EQ(entriesOf("CQUAD4,1,10,1,2,3,4,30.,0.\n"), Texts{});
}

TEST(NastranShells, ReferencesToNothingAreRefused) {
  StructureOfText s;
  ReadStructureText(Square + Plate + "PSHELL,11,8,1.\nCQUAD4,1,10,1,2,3,99\nCQUAD4,2,12,1,2,3,4\n" +
                        "CTRIA3,3,11,1,2,3\nCQUAD4,4,10,1,2,2,4\nPBARL,12,7,,BAR\n,1.,1.\n",
                    s);
  EXPECT_TRUE(s.model.shells.empty());
  const auto has = [&](const std::string& text) {
    for (const std::string& entry : Entries(s.read.report)) {
      if (entry == text) return true;
    }
    return false;
  };
  EXPECT_TRUE(has("CQUAD4 refused 1: a node of it does not exist (CQUAD4 1, node 99)"));
  EXPECT_TRUE(has("CQUAD4 refused 1: its property does not exist (CQUAD4 2, property 12)"));
  EXPECT_TRUE(
      has("CTRIA3 refused 1: the material of its property does not exist (CTRIA3 3, PSHELL 11)"));
  EXPECT_TRUE(has("CQUAD4 refused 1: a node stands in it twice (CQUAD4 4)"));
}

TEST(NastranShells, NumbersUsedTwiceAreRefusedUnlessTheCardsSayTheSame) {
  StructureOfText s;
  ReadStructureText(Square + Plate +
                        "CQUAD4,1,10,1,2,3,4\nCQUAD4,1,10,1,2,3,4\nCTRIA3,1,10,1,2,3\n"
                        "PBARL,10,7,,TUBE2\n,5.,1.\nCBAR,1,10,1,2,0.,1.,0.\n",
                    s);
  EXPECT_EQ(s.model.shells.size(), 1U);
  EXPECT_TRUE(HasEntry(s.read.report, "CQUAD4", Fate::NoEffect, "it says again"));
  EXPECT_TRUE(HasEntry(s.read.report, "CTRIA3", Fate::Refused, "another card has its number"));
  EXPECT_TRUE(HasEntry(s.read.report, "CBAR", Fate::Refused, "another card has its number"));
}

TEST(NastranShells, ShearPanelsHaveNoCounterpart) {
  StructureOfText s;
  ReadStructureText(Square + "CSHEAR,1,3,1,2,3,4\nPSHEAR,3,7,2.\nMAT1,7,1.+5,,.3\n", s);
  ASSERT_EQ(s.model.shells.size(), 1U);
  EXPECT_EQ(s.model.shells[0].thickness, -1);
  EXPECT_EQ(s.model.shells[0].material, 0);
  EXPECT_EQ(s.model.groups.at(0).lacks, "PSHEAR: there is no panel that carries shear alone");
}

}  // namespace
}  // namespace kvx::test
