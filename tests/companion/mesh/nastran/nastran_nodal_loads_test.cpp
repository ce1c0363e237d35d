// Forces, moments and gravity. Sums are about the origin: M = r x F + the moments.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "mesh/nastran/load_sums.h"

namespace kvx::test {
namespace {

// System 6 is cylindrical about z, system 5 has x along the global y and y along the global -x.
std::string Deck(const std::string& cards) {
  return "SOL 101\nCEND\nLOAD = 3\nBEGIN BULK\n"
         "CORD2R,5,,0.,0.,0.,0.,0.,1.\n,0.,1.,0.\n"
         "CORD2C,6,,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n"
         "GRID,1,,0.,0.,0.\n"
         "GRID,2,,2.,0.,0.\n"
         "GRID,3,,0.,4.,0.\n"
         "GRID,4,,1.,1.,5.\n" +
         cards;
}

TEST(NastranNodalLoads, AForceIsItsFactorTimesItsVector) {
  // (0, 6, -8) at (2, 0, 0): M = (0, 16, 12).
  ExpectSums(ImportDeckText(Deck("FORCE,3,2,,2.,0.,3.,-4.\n")), 0, {0, 6, -8, 0, 16, 12});
}

TEST(NastranNodalLoads, AMomentHasNoArm) {
  ExpectSums(ImportDeckText(Deck("MOMENT,3,2,0,-2.,1.,3.,-4.\n")), 0, {0, 0, 0, -2, -6, 8});
}

TEST(NastranNodalLoads, AVectorIsAlongTheAxesOfItsSystem) {
  // System 5: (1, 2, 3) is (-2, 1, 3). At (2, 0, 0): M = (0, -6, 2).
  ExpectSums(ImportDeckText(Deck("FORCE,3,2,5,1.,1.,2.,3.\n")), 0, {-2, 1, 3, 0, -6, 2});
  // System 6 at (0, 4, 0): r is y, theta is -x: (1, 2, 3) is (-2, 1, 3). M = (12, 0, 8).
  ExpectSums(ImportDeckText(Deck("FORCE,3,3,6,1.,1.,2.,3.\n")), 0, {-2, 1, 3, 12, 0, 8});
  // At (1, 1, 5) r is (1, 1, 0) / sqrt(2).
  const double h = std::sqrt(0.5);
  ExpectSums(ImportDeckText(Deck("MOMENT,3,4,6,2.,1.\n")), 0, {0, 0, 0, 2 * h, 2 * h, 0});
}

TEST(NastranNodalLoads, BlankComponentsAreZero) {
  ExpectSums(ImportDeckText(Deck("FORCE   3       3               5.              1.\n")), 0,
             {0, 5, 0, 0, 0, 0});
}

TEST(NastranNodalLoads, LoadsOfOneSetAddUpAndANodeHasOneRow) {
  const ImportedDeck deck =
      ImportDeckText(Deck("FORCE,3,3,,1.,1.\nFORCE,3,2,,1.,0.,1.\nMOMENT,3,3,,1.,0.,0.,7.\n"));
  ASSERT_EQ(deck.model.cases.size(), 1U);
  ASSERT_EQ(deck.model.cases[0].forces.size(), 2U);
  // (1, 0, 0) at (0, 4, 0): Mz = -4; (0, 1, 0) at (2, 0, 0): Mz = 2; and 7.
  ExpectSums(deck, 0, {1, 1, 0, 0, 0, 5});
}

TEST(NastranNodalLoads, AForceMayActFromNodeToNode) {
  // From (0, 4, 0) to (1, 1, 5): (1, -3, 5) / sqrt(35), times -7.
  const double f = -7.0 / std::sqrt(35.0);
  // At (2, 0, 0): M = (0, -2 Fz, 2 Fy).
  ExpectSums(ImportDeckText(Deck("FORCE1,3,2,-7.,3,4\n")), 0,
             {f, -3 * f, 5 * f, 0, -10 * f, -6 * f});
  ExpectSums(ImportDeckText(Deck("MOMENT1,3,2,-7.,3,4\n")), 0, {0, 0, 0, f, -3 * f, 5 * f});
}

TEST(NastranNodalLoads, AForceMayActSquareToTwoLines) {
  // (2, 0, 0) x (0, 4, 0) = (0, 0, 8): along z. At (1, 1, 5): M = (Fz, -Fz, 0).
  ExpectSums(ImportDeckText(Deck("FORCE2,3,4,6.,1,2,1,3\n")), 0, {0, 0, 6, 6, -6, 0});
  ExpectSums(ImportDeckText(Deck("MOMENT2,3,4,6.,1,3,1,2\n")), 0, {0, 0, 0, 0, 0, -6});
}

TEST(NastranNodalLoads, WhatCannotBeAppliedIsToldOf) {
  const auto refused = [](const std::string& card) {
    return EntriesText(ImportDeckText(Deck(card)).report, Fate::Refused);
  };
  EXPECT_EQ(refused("FORCE,3,99,,1.,1.\n"), "FORCE|it names a node that does not exist|1\n");
  EXPECT_EQ(refused("MOMENT,3,2,99,1.,1.\n"),
            "MOMENT|it names a coordinate system that does not exist|1\n");
  EXPECT_EQ(refused("FORCE1,3,2,1.,3,99\n"), "FORCE1|it names a node that does not exist|1\n");
  EXPECT_EQ(refused("FORCE1,3,2,1.,3,3\n"), "FORCE1|its nodes give no direction|1\n");
  EXPECT_EQ(refused("FORCE2,3,2,1.,1,2,2,1\n"), "FORCE2|its nodes give no direction|1\n");
  EXPECT_NE(ImportStopText(Deck("FORCE,3,2,,,1.\n")).find("field 5"), std::string::npos);
  const ImportedDeck zero = ImportDeckText(Deck("FORCE,3,2,,1.,0.\n"));
  EXPECT_EQ(EntriesText(zero.report, Fate::NoEffect), "FORCE|its load is 0|1\n");
  EXPECT_EQ(EntriesText(zero.report, Fate::Lost), "");
}

// The manual asks for a vector of which one component is not 0: where all are left out, the line
// may be cut off.
TEST(NastranNodalLoads, ABlankVectorIsLost) {
  for (const std::string card : {"FORCE,3,2,,1.\n", "MOMENT,3,2,,1.\n", "GRAV,3,,1.\n"}) {
    const ImportedDeck deck = ImportDeckText(Deck(card));
    EXPECT_EQ(EntriesText(deck.report, Fate::Lost),
              card.substr(0, card.find(',')) + "|its vector is blank: no direction|1\n");
    EXPECT_FALSE(deck.model.cases.at(0).hasAcceleration);
  }
}

// Node 1 lies on the axis of system 6: there r has no direction, z has. Where the angle is 0, r is
// x and theta is y.
TEST(NastranNodalLoads, OnTheAxisOfASystemTheAngleIsZeroAndReported) {
  const auto limited = [](const std::string& cards) {
    return EntriesText(ImportDeckText(Deck(cards)).report, Fate::Limited, "FORCE");
  };
  const std::string told =
      "FORCE|on the axis of its cylindrical or spherical system: the angle there is taken as 0|1\n";
  ExpectSums(ImportDeckText(Deck("FORCE,3,1,6,2.,1.,3.,4.\n")), 0, {2, 6, 8, 0, 0, 0});
  EXPECT_EQ(limited("FORCE,3,1,6,2.,1.,0.,0.\n"), told);
  EXPECT_EQ(limited("FORCE,3,1,6,2.,0.,3.,0.\n"), told);
  EXPECT_EQ(limited("FORCE,3,1,6,2.,0.,0.,3.\n"), "");
  EXPECT_EQ(limited("FORCE,3,2,6,2.,1.,3.,4.\n"), "");
  EXPECT_EQ(limited("FORCE,3,1,5,2.,1.,3.,4.\n"), "");
  EXPECT_EQ(limited("FORCE,3,1,6,0.,1.,0.,0.\n"), "");
}

// The axis of system 9 goes through (0.3, 0.1, 0), where node 9 is said to be in system 8, which
// is turned: what rounding leaves between them is no direction.
TEST(NastranNodalLoads, RoundingGivesNoDirection) {
  const ImportedDeck deck =
      ImportDeckText(Deck("CORD2C,8,,.3,.3,0.,.3,.3,1.\n,1.,.3,0.\n"
                          "CORD2C,9,,.3,.1,0.,.3,.1,1.\n,1.,.1,0.\n"
                          "GRID,9,8,.2,270.,0.\nFORCE,3,9,9,1.,1.\n"));
  // Along x at y = 0.1.
  ExpectSums(deck, 0, {1, 0, 0, 0, 0, -0.1});
  EXPECT_NE(EntriesText(deck.report, Fate::Limited, "FORCE"), "");
}

TEST(NastranNodalLoads, GravityOfZeroIsReported) {
  const ImportedDeck deck = ImportDeckText(Deck("GRAV,3,,2.,0.,0.,0.\nGRAV,3,,0.,0.,0.,1.\n"));
  EXPECT_EQ(EntriesText(deck.report, Fate::NoEffect), "GRAV|its load is 0|2\n");
  EXPECT_FALSE(deck.model.cases.at(0).hasAcceleration);
}

TEST(NastranNodalLoads, GravityIsAnAccelerationAndAddsUp) {
  // System 5: (1, 0, 0) is y. 9.81 along -z and 2 x 3 along y.
  const ImportedDeck deck = ImportDeckText(Deck("GRAV,3,,9.81,0.,0.,-1.\nGRAV,3,5,2.,3.,0.,0.\n"));
  ASSERT_EQ(deck.model.cases.size(), 1U);
  EXPECT_TRUE(deck.model.cases[0].hasAcceleration);
  EXPECT_NEAR(deck.model.cases[0].acceleration[0], 0.0, 1e-12);
  EXPECT_NEAR(deck.model.cases[0].acceleration[1], 6.0, 1e-12);
  EXPECT_NEAR(deck.model.cases[0].acceleration[2], -9.81, 1e-12);
  EXPECT_EQ(EntriesText(ImportDeckText(Deck("GRAV,3,6,2.,3.,0.,0.\n")).report, Fate::Refused),
            "GRAV|its direction in a cylindrical or spherical system is not the same "
            "everywhere|1\n");
  EXPECT_FALSE(ImportDeckText(Deck("FORCE,3,2,,1.,1.\n")).model.cases.at(0).hasAcceleration);
}

}  // namespace
}  // namespace kvx::test
