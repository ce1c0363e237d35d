// Loads along bars. Sums are about the origin.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

#include "mesh/nastran/load_sums.h"

namespace kvx::test {
namespace {

// Bar 10 of length 4 along x: its element y is the global z, so its element z is the global -y. Bar
// 11 of length 5 along (3, 4, 0), element y along the global z. Bar 12 as bar 10 in y, element y
// along the global x. Flat bars with their height along the element y.
std::string Deck(const std::string& cards) {
  return "SOL 101\nCEND\nLOAD = 3\nBEGIN BULK\n"
         "GRID,1,,0.,0.,0.\nGRID,2,,4.,0.,0.\nGRID,3,,3.,4.,0.\nGRID,4,,0.,4.,0.\n"
         "CBAR,10,2,1,2,0.,0.,1.\n"
         "CBAR,11,2,1,3,0.,0.,1.\n"
         "CBAR,12,2,1,4,1.,0.,0.\n"
         "PBARL,2,1,,BAR\n,.1,.2\n"
         "MAT1,1,2.1+5,,.3\n" +
         cards;
}

std::string Told(const std::string& cards, Fate fate) {
  return EntriesText(ImportDeckText(Deck(cards)).report, fate, "PLOAD");
}

const char* const LacksLine =
    "PLOAD1|is no line load along the web on the whole length and becomes loads at both nodes: the "
    "section forces between them lack it|1\n";

TEST(NastranBeamLoads, AWholeLoadAlongTheWebIsALineLoad) {
  // 3 x 4 = 12 along z at x = 2: My = -24.
  for (const char* type : {"FZ", "FYE"}) {
    const ImportedDeck deck =
        ImportDeckText(Deck(std::string("PLOAD1,3,10,") + type + ",FR,0.,3.,1.,3.\n"));
    ExpectSums(deck, 0, {0, 0, 12, 0, -24, 0});
    EXPECT_EQ(deck.model.cases[0].lineLoads.size(), 1U) << type;
    EXPECT_TRUE(deck.model.cases[0].forces.empty()) << type;
    EXPECT_EQ(EntriesText(deck.report, Fate::Limited, "PLOAD"), "") << type;
  }
}

// 1 to 4 on 4: 10; its moment about the first end is 4 x 4 (1 + 2 x 4) / 6 = 24.
TEST(NastranBeamLoads, ALoadMayChangeOverTheLength) {
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,10,FZ,LE,0.,1.,4.,4.\n")), 0, {0, 0, 10, 0, -24, 0});
}

// The deck's z is x times y: the global x times z is the global -y.
TEST(NastranBeamLoads, TheElementsAxesAreTheDecks) {
  const ImportedDeck deck = ImportDeckText(Deck("PLOAD1,3,10,FZE,FR,0.,3.,1.,3.\n"));
  ExpectSums(deck, 0, {0, -12, 0, 0, 0, -24});
  EXPECT_EQ(EntriesText(deck.report, Fate::Limited, "PLOAD"), LacksLine);
  // Bar 12, y along x: its z is y times x, the global -z. 12 at (0, 2, 0): Mx = 2 Fz.
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,12,FYE,FR,0.,3.,1.,3.\n")), 0, {12, 0, 0, 0, 0, -24});
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,12,FZE,FR,0.,3.,1.,3.\n")), 0, {0, 0, -12, -24, 0, 0});
  // Along bar 11: 3 x 5 = 15 along (0.6, 0.8, 0), through the origin.
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,11,FXE,FR,0.,3.,1.,3.\n")), 0, {9, 12, 0, 0, 0, 0});
}

// q L / 2 and q L^2 / 12 at both ends of a beam across the load: 6 and 4.
TEST(NastranBeamLoads, WhatIsNoLineLoadBecomesTheEndLoadsOfAClampedBeam) {
  const ImportedDeck deck = ImportDeckText(Deck("PLOAD1,3,10,FY,FR,0.,3.,1.,3.\n"));
  ASSERT_EQ(deck.model.cases.size(), 1U);
  ASSERT_EQ(deck.model.cases[0].forces.size(), 2U);
  const std::array<double, 6> first = {0, 6, 0, 0, 0, 4}, second = {0, 6, 0, 0, 0, -4};
  for (std::size_t k = 0; k < 6; ++k) {
    EXPECT_NEAR(deck.model.cases[0].forces[0].components[k], first[k], 1e-12) << k;
    EXPECT_NEAR(deck.model.cases[0].forces[1].components[k], second[k], 1e-12) << k;
  }
}

// From 1 to 3, with 2 to 4: 6, its moment about the origin the integral of (1 + s) (2 + s) from 0
// to 2: 4 + 6 + 8 / 3.
TEST(NastranBeamLoads, ALoadMayActOnAPart) {
  const double moment = 4.0 + 6.0 + 8.0 / 3.0;
  const ImportedDeck deck = ImportDeckText(Deck("PLOAD1,3,10,FZ,LE,1.,2.,3.,4.\n"));
  ExpectSums(deck, 0, {0, 0, 6, 0, -moment, 0});
  EXPECT_TRUE(deck.model.cases[0].lineLoads.empty());
  EXPECT_EQ(EntriesText(deck.report, Fate::Limited, "PLOAD"), LacksLine);
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,10,FZ,FR,.25,2.,.75,4.\n")), 0,
             {0, 0, 6, 0, -moment, 0});
}

TEST(NastranBeamLoads, ASingleLoadHasOnePlace) {
  // 7 at x = 1.
  const LoadSums sums = {0, 0, 7, 0, -7, 0};
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,10,FZ,FR,.25,7.\n")), 0, sums);
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,10,FZ,LE,1.,7.,1.,7.\n")), 0, sums);
  EXPECT_EQ(Told("PLOAD1,3,10,FZ,FR,.25,7.\n", Fate::Limited),
            "PLOAD1|becomes loads at both nodes: the section forces between them lack it|1\n");
}

TEST(NastranBeamLoads, ASingleLoadAtAnEndIsALoadOfItsNode) {
  const ImportedDeck deck = ImportDeckText(Deck("PLOAD1,3,10,FZ,LE,4.,7.\n"));
  ExpectSums(deck, 0, {0, 0, 7, 0, -28, 0});
  EXPECT_EQ(EntriesText(deck.report, Fate::Limited, "PLOAD"), "");
}

TEST(NastranBeamLoads, MomentsActAboutTheirAxes) {
  // 2 x 4 about the bar; 2 x 4 about y; 5 about the element's z, the global -y.
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,10,MX,FR,0.,2.,1.,2.\n")), 0, {0, 0, 0, 8, 0, 0});
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,10,MY,FR,0.,2.,1.,2.\n")), 0, {0, 0, 0, 0, 8, 0});
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,10,MZE,FR,.5,5.\n")), 0, {0, 0, 0, 0, -5, 0});
}

// Bar 11 runs along (0.6, 0.8): across y its length 5 is 3, across x it is 4, across z it is 5.
TEST(NastranBeamLoads, AProjectedLoadIsPerLengthAcrossIt) {
  // 2 x 3 = 6 along y at (1.5, 2): Mz = 9; 2 x 4 = 8 along x: Mz = -16.
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,11,FY,FRPR,0.,2.,1.,2.\n")), 0, {0, 6, 0, 0, 0, 9});
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,11,FX,LEPR,0.,2.,5.,2.\n")), 0, {8, 0, 0, 0, 0, -16});
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,11,FZ,FRPR,0.,2.,1.,2.\n")), 0, {0, 0, 10, 20, -15, 0});
  // A single load has no length.
  ExpectSums(ImportDeckText(Deck("PLOAD1,3,11,FY,FRPR,1.,2.\n")), 0, {0, 2, 0, 0, 0, 6});
  EXPECT_EQ(Told("PLOAD1,3,10,FX,FRPR,0.,2.,1.,2.\n", Fate::NoEffect),
            "PLOAD1|along its element the projected length is 0|1\n");
  EXPECT_EQ(Told("PLOAD1,3,10,MX,FRPR,0.,2.,1.,2.\n", Fate::Lost),
            "PLOAD1|moments per projected length are not taken over|1\n");
}

// The bar's line stands 0.5 above its nodes along z. 3 x 4 = 12 along y there has Mx = -6, and 12
// along x has My = 6; along z there is no arm.
TEST(NastranBeamLoads, ALoadActsOnTheLineOfAnOffsetBar) {
  const auto importOffset = [](const std::string& type) {
    return ImportDeckText(Deck("CBAR,13,2,1,2,0.,0.,1.\n,,,0.,0.,.5,0.,0.,.5\nPLOAD1,3,13," + type +
                               ",FR,0.,3.,1.,3.\n"));
  };
  ExpectSums(importOffset("FY"), 0, {0, 12, 0, -6, 0, 24});
  ExpectSums(importOffset("FX"), 0, {12, 0, 0, 0, 6, 0});
  const ImportedDeck along = importOffset("FZ");
  ExpectSums(along, 0, {0, 0, 12, 0, -24, 0});
  EXPECT_EQ(EntriesText(along.report, Fate::Limited, "PLOAD"), "");
}

// 3.99999 in a field of eight characters stands for the end.
TEST(NastranBeamLoads, APlaceNearlyAtTheEndIsTheEnd) {
  const ImportedDeck deck = ImportDeckText(Deck("PLOAD1,3,10,FZ,LE,.00001,3.,4.00001,3.\n"));
  EXPECT_EQ(deck.model.cases.at(0).lineLoads.size(), 1U);
}

TEST(NastranBeamLoads, WhatCannotBeAppliedIsToldOf) {
  EXPECT_EQ(Told("PLOAD1,3,99,FZ,FR,0.,2.,1.,2.\n", Fate::Refused),
            "PLOAD1|it names a bar or beam that does not exist|1\n");
  EXPECT_EQ(Told("PLOAD1,3,10,FZ,FR,0.,2.,1.1,2.\n", Fate::Refused),
            "PLOAD1|it lies outside its element|1\n");
  EXPECT_EQ(Told("PLOAD1,3,10,FZ,LE,3.,2.,1.,2.\n", Fate::Refused),
            "PLOAD1|it lies outside its element|1\n");
  EXPECT_EQ(Told("PLOAD1,3,10,FQ,FR,0.,2.,1.,2.\n", Fate::Refused),
            "PLOAD1|its type or scale is none of the format's|1\n");
  EXPECT_EQ(Told("PLOAD1,3,10,FZ,XX,0.,2.,1.,2.\n", Fate::Refused),
            "PLOAD1|its type or scale is none of the format's|1\n");
  EXPECT_EQ(Told("PLOAD1,3,10,FZ,FR,0.,2.,1.\n", Fate::Limited),
            "PLOAD1|its second value is blank: taken as the first|1\n");
}

}  // namespace
}  // namespace kvx::test
