// Loads on shells. Sums are about the origin: a load p at (x, y, 0) along z has M = (y p, -x p, 0).
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "mesh/nastran/load_sums.h"

namespace kvx::test {
namespace {

// A rectangle of 2 x 3 (element 10, centre at (1, 1.5)) and a triangle beside it, of nodes 2, 5, 3
// (element 11, area 3, centre at (3, 1)), both with their normals along z. A bar, and a solid that
// is not taken over.
std::string Deck(const std::string& cards) {
  return "SOL 101\nCEND\nLOAD = 3\nBEGIN BULK\n"
         "CORD2R,5,,0.,0.,0.,0.,0.,1.\n,0.,1.,0.\n"
         "CORD2C,6,,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n"
         "GRID,1,,0.,0.,0.\nGRID,2,,2.,0.,0.\nGRID,3,,2.,3.,0.\nGRID,4,,0.,3.,0.\n"
         "GRID,5,,5.,0.,0.\nGRID,6,,5.,0.,1.\nGRID,7,,5.,3.,1.\nGRID,8,,5.,3.,0.\n"
         "CQUAD4,10,1,1,2,3,4\n"
         "CTRIA3,11,1,2,5,3\n"
         "CBAR,12,2,1,2,0.,0.,1.\n"
         "CHEXA,13,3,1,2,3,4,5,6\n,7,8\n"
         "PSHELL,1,1,.1\n"
         "PBARL,2,1,,BAR\n,1.,2.\n"
         "MAT1,1,2.1+5,,.3\n" +
         cards;
}

// Entries of loads alone.
std::string Told(const std::string& cards, Fate fate) {
  return EntriesText(ImportDeckText(Deck(cards)).report, fate, "PLOAD");
}

TEST(NastranSurfaceLoads, APositivePressureActsAlongTheNormal) {
  // 5 on 2 x 3: 30 at (1, 1.5).
  const ImportedDeck deck = ImportDeckText(Deck("PLOAD2,3,5.,10\n"));
  ExpectSums(deck, 0, {0, 0, 30, 45, -30, 0});
  EXPECT_EQ(deck.model.cases[0].pressures.size(), 1U);
  EXPECT_TRUE(deck.model.cases[0].forces.empty());
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,10,5.\n")), 0, {0, 0, 30, 45, -30, 0});
}

TEST(NastranSurfaceLoads, Pload2TakesListsAndRanges) {
  // The triangle: area 4.5 (base 3, height 3), 5 x 4.5 = 22.5 at (3, 1): M = (22.5, -67.5).
  const LoadSums both = {0, 0, 52.5, 67.5, -97.5, 0};
  ExpectSums(ImportDeckText(Deck("PLOAD2,3,5.,10,11\n")), 0, both);
  ExpectSums(ImportDeckText(Deck("PLOAD2,3,5.,10,THRU,99\n")), 0, both);
  ExpectSums(ImportDeckText(Deck("PLOAD2,3,5.,11,,10\n")), 0, both);
}

TEST(NastranSurfaceLoads, Pload4TakesARange) {
  const LoadSums both = {0, 0, 52.5, 67.5, -97.5, 0};
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,10,5.,,,,THRU,11\n")), 0, both);
  ExpectSums(ImportDeckText(Deck("PLOAD4  3       10      5.                              "
                                 "THRU    11\n")),
             0, both);
}

// N_k are the bilinear functions on 2 x 3. The integrals of x N_k and y N_k are a side's length
// times the area / 6 for the two corners at the far side, / 12 for the two at x = 0 or y = 0; of
// N_k itself area / 4.
TEST(NastranSurfaceLoads, P2ToP4AreP1WhereTheyAreBlank) {
  // (1, 2, 1, 1): 6 x 5 / 4 = 7.5; Mx = 18 (3 / 12 + 2 / 6) = 10.5; My = -12 (2 / 12 + 3 / 6) = -8.
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,10,1.,2.\n")), 0, {0, 0, 7.5, 10.5, -8, 0});
  // (1, 2, 4, 1): 12; Mx = 18 (3 / 12 + 5 / 6) = 19.5; My = -12 (2 / 12 + 6 / 6) = -14.
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,10,1.,2.,4.\n")), 0, {0, 0, 12, 19.5, -14, 0});
  // A 0 is no blank: (1, 0, 0, 0): 1.5; Mx = 18 / 12; My = -12 / 12.
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,10,1.,0.,0.,0.\n")), 0, {0, 0, 1.5, 1.5, -1, 0});
}

// P4 of a triangle means nothing. Integrals over area A: x_j N_j N_k = A / 12 (1 + delta_jk).
// Corners (2, 0), (5, 0), (2, 3), values 1, 2, 4: A / 12 = 0.375; total A 7 / 3 = 10.5;
// Mx = 3 x 0.375 (1 + 2 + 8) = 12.375;
// My = -0.375 (2 (2 + 2 + 4) + 5 (1 + 4 + 4) + 2 (1 + 2 + 8)) = -31.125.
TEST(NastranSurfaceLoads, ATriangleHasThreePressures) {
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,11,1.,2.,4.,99.\n")), 0,
             {0, 0, 10.5, 12.375, -31.125, 0});
}

// The vector's length means nothing: 5 per area on 6, along (0, 3, 4) / 5: (0, 18, 24) at
// (1, 1.5, 0): M = (1.5 Fz, -Fz, Fy).
TEST(NastranSurfaceLoads, AContinuationGivesADirection) {
  const LoadSums sums = {0, 18, 24, 36, -24, 18};
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,10,5.\n,0,0.,3.,4.\n")), 0, sums);
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,10,5.\n,,,30.,40.\n")), 0, sums);
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,10,5.\n,0,0.,3.,4.,SURF\n")), 0, sums);
  // System 5 has its x along y, its y along -x: (3, 0, 4) there.
  ExpectSums(ImportDeckText(Deck("PLOAD4,3,10,5.\n,5,3.,0.,4.\n")), 0, sums);
}

TEST(NastranSurfaceLoads, ALoadAgainstTheNormalStaysAPressure) {
  const ImportedDeck deck = ImportDeckText(Deck("PLOAD4,3,10,5.\n,0,0.,0.,-.5\n"));
  ExpectSums(deck, 0, {0, 0, -30, -45, 30, 0});
  EXPECT_EQ(deck.model.cases[0].pressures.size(), 1U);
}

// On the triangle, along r of the cylindrical system: the corners at (2, 0) and (5, 0) have r = x,
// that at (2, 3) has (2, 3) / sqrt(13). q = 6: 1.5 x 6 at each corner.
TEST(NastranSurfaceLoads, ADirectionOfACylindricalSystemTurnsFromCornerToCorner) {
  const double f = 9.0, root = std::sqrt(13.0);
  const ImportedDeck deck = ImportDeckText(Deck("PLOAD4,3,11,6.\n,6,1.,0.,0.\n"));
  ASSERT_EQ(deck.model.cases.size(), 1U);
  const LoadSums sums = SumLoads(deck.model, deck.model.cases[0]);
  EXPECT_NEAR(sums[0], 2 * f + f * 2 / root, 1e-9);
  EXPECT_NEAR(sums[1], f * 3 / root, 1e-9);
  EXPECT_NEAR(sums[2], 0.0, 1e-9);
}

// Node 1 of element 10 lies on the axis of system 6; those of element 11 do not.
TEST(NastranSurfaceLoads, ACornerOnTheAxisOfASystemIsReported) {
  const std::string told =
      "PLOAD4|on the axis of its cylindrical or spherical system: the angle there is taken as "
      "0|1\n";
  EXPECT_EQ(Told("PLOAD4,3,10,6.\n,6,1.,0.,0.\n", Fate::Limited), told);
  EXPECT_EQ(Told("PLOAD4,3,10,6.,,,,THRU,11\n,6,1.,0.,0.\n", Fate::Limited), told);
  EXPECT_EQ(Told("PLOAD4,3,10,6.\n,6,0.,0.,1.\n", Fate::Limited), "");
  EXPECT_EQ(Told("PLOAD4,3,11,6.\n,6,1.,0.,0.\n", Fate::Limited), "");
}

TEST(NastranSurfaceLoads, PloadActsByTheOrderOfItsOwnNodes) {
  const ImportedDeck same = ImportDeckText(Deck("PLOAD,3,5.,2,3,4,1\n"));
  ExpectSums(same, 0, {0, 0, 30, 45, -30, 0});
  EXPECT_EQ(same.model.cases[0].pressures.size(), 1U);
  ExpectSums(ImportDeckText(Deck("PLOAD,3,5.,2,1,4,3\n")), 0, {0, 0, -30, -45, 30, 0});
  ExpectSums(ImportDeckText(Deck("PLOAD,3,5.,3,2,5\n")), 0, {0, 0, 22.5, 22.5, -67.5, 0});
  ExpectSums(ImportDeckText(Deck("PLOAD,3,5.,2,3,5,0\n")), 0, {0, 0, -22.5, -22.5, 67.5, 0});
}

// The nodes 1, 2, 3 are half of the rectangle: 5 x 3 = 15 at (4 / 3, 1). The nodes 5, 8, 7, 6 are
// 3 x 1 at x = 5, normal (0, 3, 0) x (0, 0, 1) along x: 15 at (5, 1.5, 0.5): M = (0, 7.5, -22.5).
TEST(NastranSurfaceLoads, PloadWithoutShellBecomesForces) {
  ExpectSums(ImportDeckText(Deck("PLOAD,3,5.,1,2,3\n")), 0, {0, 0, 15, 15, -20, 0});
  ExpectSums(ImportDeckText(Deck("PLOAD,3,5.,5,8,7,6\n")), 0, {15, 0, 0, 0, 7.5, -22.5});
  EXPECT_EQ(Told("PLOAD,3,5.,1,2,3\n", Fate::Limited),
            "PLOAD|no shell has its corners: forces at the nodes|1\n");
}

TEST(NastranSurfaceLoads, PloadAcrossAShellIsRefused) {
  EXPECT_EQ(Told("PLOAD,3,5.,1,3,2,4\n", Fate::Refused), "PLOAD|its nodes go across the shell|1\n");
}

TEST(NastranSurfaceLoads, FacesOfSolidsAreLost) {
  EXPECT_EQ(Told("PLOAD4,3,13,5.,,,,1,3\n", Fate::Lost),
            "PLOAD4|its element is not taken over|1\n");
  EXPECT_EQ(Told("PLOAD2,3,5.,13,THRU,15\n", Fate::Lost),
            "PLOAD2|it names a range without shells|1\n");
}

TEST(NastranSurfaceLoads, LoadsOnEdgesAreLost) {
  EXPECT_EQ(Told("PLOAD4,3,10,5.\n,0,0.,0.,1.,LINE,NORM\n", Fate::Lost),
            "PLOAD4|loads along the edges of shells are not taken over|1\n");
}

TEST(NastranSurfaceLoads, WhatDoesNotExistIsRefused) {
  EXPECT_EQ(Told("PLOAD4,3,99,5.\nPLOAD2,3,5.,98\n", Fate::Refused),
            "PLOAD4|it names an element that does not exist|1\n"
            "PLOAD2|it names an element that does not exist|1\n");
  // 5 is a coordinate system, not an element; 12 is a bar.
  EXPECT_EQ(Told("PLOAD2,3,5.,5,12\n", Fate::Refused),
            "PLOAD2|it names an element that does not exist|1\nPLOAD2|its element is no shell|1\n");
  EXPECT_EQ(Told("PLOAD,3,5.,1,2,77\n", Fate::Refused),
            "PLOAD|it names a node that does not exist|1\n");
  EXPECT_EQ(Told("PLOAD4,3,10,5.\n,7,0.,0.,1.\n", Fate::Refused),
            "PLOAD4|it names a coordinate system that does not exist|1\n");
  EXPECT_EQ(Told("PLOAD4,3,10,5.\n,0,0.,0.,0.\n", Fate::Refused),
            "PLOAD4|its vector has no length|1\n");
}

}  // namespace
}  // namespace kvx::test
