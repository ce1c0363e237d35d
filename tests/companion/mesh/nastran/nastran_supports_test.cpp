#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "mesh/nastran/load_sums.h"

namespace kvx::test {
namespace {

// Five nodes along x and one away from it; no elements are needed.
const char* const Line =
    "BEGIN BULK\n"
    "GRID,1,,0.,0.,0.\n"
    "GRID,2,,1.,0.,0.\n"
    "GRID,3,,2.,0.,0.\n"
    "GRID,5,,3.,0.,0.\n"
    "GRID,8,,4.,0.,0.\n";

std::string Restraints(const std::string& control, const std::string& cards) {
  const ImportedDeck deck = ImportDeckText("SOL 101\nCEND\n" + control + Line + cards);
  EXPECT_EQ(EntriesText(deck.report, Fate::Refused), "");
  if (deck.model.cases.size() != 1) return "not one case";
  return RestraintsText(deck.model, deck.model.cases[0]);
}

std::string RefusedOf(const std::string& control, const std::string& cards) {
  return EntriesText(ImportDeckText("SOL 101\nCEND\n" + control + Line + cards).report,
                     Fate::Refused);
}

TEST(NastranSupports, SpcHasTwoNodesToACard) {
  EXPECT_EQ(Restraints("SPC = 4\n", "SPC,4,1,123456,0.,3,23\nSPC,4,8,1\nSPC,5,2,123\n"),
            "1: 1 1 1 1 1 1\n3: 0 1 1 0 0 0\n8: 1 0 0 0 0 0\n");
}

// The range goes over 4, 6 and 7, which do not exist.
TEST(NastranSupports, Spc1TakesListsRangesAndContinuations) {
  EXPECT_EQ(Restraints("SPC = 4\n",
                       "SPC1,4,3,2,THRU,6\n"
                       "SPC1,4,16,1,2,3,5,8,1\n,2\n"),
            "1: 1 0 0 0 0 1\n2: 1 0 1 0 0 1\n3: 1 0 1 0 0 1\n5: 1 0 1 0 0 1\n8: 1 0 0 0 0 1\n");
  EXPECT_EQ(Restraints("SPC = 4\n", "SPC1     4      456     2       thru    3\n"),
            "2: 0 0 0 1 1 1\n3: 0 0 0 1 1 1\n");
}

TEST(NastranSupports, RangesThatOverlapAddUp) {
  EXPECT_EQ(Restraints("SPC = 4\n", "SPC1,4,1,1,THRU,5\nSPC1,4,12,2,THRU,3\nSPC1,4,3,3,THRU,8\n"),
            "1: 1 0 0 0 0 0\n2: 1 1 0 0 0 0\n3: 1 1 1 0 0 0\n5: 1 0 1 0 0 0\n8: 0 0 1 0 0 0\n");
}

TEST(NastranSupports, ARangeOverManyNumbersCostsNoMore) {
  EXPECT_EQ(Restraints("SPC = 4\n", "SPC1,4,2,5,THRU,99999999\n"),
            "5: 0 1 0 0 0 0\n8: 0 1 0 0 0 0\n");
}

TEST(NastranSupports, AnSpcaddAddsItsSetsAlsoThoseOfOthers) {
  EXPECT_EQ(
      Restraints("SPC = 1\n", "SPCADD,1,2,3\nSPCADD,3,4\nSPC1,2,1,1\nSPC1,4,2,1\nSPC1,9,3,1\n"),
      "1: 1 1 0 0 0 0\n");
}

// A circle names each of its sets once: what they are is clear.
TEST(NastranSupports, SpcaddsThatNameEachOtherEnd) {
  EXPECT_EQ(Restraints("SPC = 1\n", "SPCADD,1,2\nSPCADD,2,1,3\nSPC1,3,1,1\n"), "1: 1 0 0 0 0 0\n");
}

// The manuals: if both have the same number, only the SPCADD is used.
TEST(NastranSupports, AnSpcaddTakesThePlaceOfCardsWithItsNumber) {
  const ImportedDeck deck = ImportDeckText(std::string("SOL 101\nCEND\nSPC = 1\n") + Line +
                                           "SPCADD,1,2\nSPC1,1,3,1\nSPC1,2,1,1\n");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[0]), "1: 1 0 0 0 0 0\n");
  EXPECT_EQ(EntriesText(deck.report, Fate::Lost),
            "SPC1|an SPCADD of the same number takes its place|1\n");
}

TEST(NastranSupports, SetZeroBelongsToEverySelection) {
  EXPECT_EQ(Restraints("SPC = 1\n", "SPC1,0,3,2\nSPC1,1,1,1\n"),
            "1: 1 0 0 0 0 0\n2: 0 0 1 0 0 0\n");
}

// Field 8 of GRID; blank takes that of GRDSET, 0 is none. They add up with those of the set.
TEST(NastranSupports, GridHasItsOwnSupportsElseThoseOfGrdset) {
  const std::string grids =
      "GRDSET,,,,,,,456\n"
      "GRID,11,,0.,1.,0.,,12\n"
      "GRID,12,,1.,1.,0.\n"
      "GRID,13,,2.,1.,0.,,0\n";
  const ImportedDeck deck =
      ImportDeckText("SOL 101\nCEND\nSPC = 1\nBEGIN BULK\n" + grids + "SPC1,1,13,12,13\n");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[0]),
            "11: 1 1 0 0 0 0\n12: 1 0 1 1 1 1\n13: 1 0 1 0 0 0\n");
}

TEST(NastranSupports, GridsOwnSupportsNeedNoSet) {
  const ImportedDeck deck = ImportDeckText(
      "SOL 101\nCEND\nSUBCASE 1\nLOAD = 3\nSUBCASE 2\nLOAD = 3\nBEGIN BULK\n"
      "GRID,1,,0.,0.,0.,,123\nGRID,2,,1.,0.,0.\nFORCE,3,2,,1.,1.\n");
  ASSERT_EQ(deck.model.cases.size(), 2U);
  ASSERT_EQ(deck.model.supports.size(), 1U);
  EXPECT_EQ(deck.model.supports[0].name, "GRID");
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[1]), "1: 1 1 1 0 0 0\n");
}

TEST(NastranSupports, CasesWithTheSameSelectionShareIt) {
  const ImportedDeck deck = ImportDeckText(
      std::string("SOL 101\nCEND\nLOAD = 3\nSPC = 1\nSUBCASE 1\nSUBCASE 2\nSUBCASE 3\nSPC = 2\n") +
      Line + "SPC1,1,1,1\nSPC1,2,2,1\nFORCE,3,2,,1.,1.\n");
  ASSERT_EQ(deck.model.cases.size(), 3U);
  ASSERT_EQ(deck.model.supports.size(), 2U);
  EXPECT_EQ(deck.model.supports[0].name, "SPC 1");
  EXPECT_EQ(deck.model.cases[1].supports, 0);
  EXPECT_EQ(deck.model.cases[2].supports, 1);
}

TEST(NastranSupports, AMissingNodeIsNamed) {
  const ImportedDeck deck =
      ImportDeckText(std::string("SOL 101\nCEND\nSPC = 4\n") + Line + "SPC1,4,123,1,77,78\n");
  std::string example;
  for (const ReportEntry& entry : deck.report.entries) {
    if (entry.fate == Fate::Refused) example = entry.example;
  }
  EXPECT_EQ(example, "SPC1 4: 77");
}

TEST(NastranSupports, WhatDoesNotExistIsRefused) {
  EXPECT_EQ(RefusedOf("SPC = 4\n", "SPC,4,77,123\n"),
            "SPC|it names a node that does not exist|1\n");
  EXPECT_EQ(RefusedOf("SPC = 4\n", "SPC1,4,123,1,77,78\n"),
            "SPC1|it names a node that does not exist|2\n");
  EXPECT_EQ(RefusedOf("SPC = 4\n", "SPC1,4,123,70,THRU,78\n"),
            "SPC1|it names a range without nodes|1\n");
  EXPECT_EQ(RefusedOf("SPC = 4\n", "SPCADD,4,5,6\nSPC1,5,1,1\n"),
            "SPCADD|it names a set that does not exist|1\n");
  EXPECT_EQ(RefusedOf("SPC = 4\n", "SPC1,5,1,1\n"),
            "case control SPC|a subcase asks for a set of supports that does not exist|1\n");
  EXPECT_EQ(RefusedOf("SPC = 4\n", "SPC1,4,1237,1\nSPC1,4,,2\n"),
            "SPC1|its components are not of the digits 1 to 6|2\n");
}

TEST(NastranSupports, AScalarPointIsLostNotRefused) {
  const ImportedDeck deck =
      ImportDeckText(std::string("SOL 101\nCEND\nSPC = 4\n") + Line +
                     "SPOINT,71,72\nSPOINT,80,THRU,85\nSPC1,4,123,1,72,83\nSPC,4,71,1\n");
  EXPECT_EQ(EntriesText(deck.report, Fate::Refused), "");
  EXPECT_NE(EntriesText(deck.report, Fate::Lost).find("SPC1|scalar points have no counterpart|2\n"),
            std::string::npos);
}

TEST(NastranSupports, SetsThatNoSubcaseAsksForHaveNoEffect) {
  const ImportedDeck deck = ImportDeckText(std::string("SOL 101\nCEND\nSPC = 4\n") + Line +
                                           "SPC1,4,1,1\nSPC1,5,1,1\nSPC,6,1,1\nSPCADD,7,5,6\n");
  EXPECT_EQ(EntriesText(deck.report, Fate::NoEffect),
            "SPC1|no subcase asks for its set|1\n"
            "SPC|no subcase asks for its set|1\n"
            "SPCADD|no subcase asks for its set|1\n");
}

TEST(NastranSupports, AListThatIsBrokenEndsTheImport) {
  const std::string begin = std::string("SOL 101\nCEND\nSPC = 4\n") + Line;
  for (const char* card : {"SPC1,4,1,1,THRU\n", "SPC1,4,1,THRU,5\n", "SPC1,4,1,1,THRU,THRU,5\n",
                           "SPC1,4,1,1,X\n", "SPC1,4,1,1.5\n"}) {
    EXPECT_NE(ImportStopText(begin + card).find("line 10"), std::string::npos) << card;
  }
}

// System 5: its x is the global y, its y the global -x. System 6 is cylindrical about z.
const char* const Systems =
    "SOL 101\nCEND\nSPC = 1\nBEGIN BULK\n"
    "CORD2R,5,,0.,0.,0.,0.,0.,1.\n,0.,1.,0.\n"
    "CORD2C,6,,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n"
    "GRID,1,,7.,7.,0.,5\n"
    "GRID,2,,3.,0.,0.,6\n"
    "GRID,3,,0.,3.,0.,6\n"
    "GRID,4,,3.,3.,0.,6\n";

std::string TurnedRestraints(const std::string& cards) {
  const ImportedDeck deck = ImportDeckText(Systems + cards);
  EXPECT_EQ(EntriesText(deck.report, Fate::Refused), "");
  return RestraintsText(deck.model, deck.model.cases.at(0));
}

TEST(NastranSupports, ComponentsAreThoseOfTheNodesOwnSystem) {
  EXPECT_EQ(TurnedRestraints("SPC1,1,1,1\n"), "1: 0 1 0 0 0 0\n");
  EXPECT_EQ(TurnedRestraints("SPC1,1,35,1\n"), "1: 0 0 1 1 0 0\n");
  EXPECT_EQ(TurnedRestraints("SPC1,1,1,2,3\n"), "2: 1 0 0 0 0 0\n3: 0 1 0 0 0 0\n");
  EXPECT_EQ(TurnedRestraints("SPC1,1,24,3\n"), "3: 1 0 0 0 1 0\n");
}

// At 45 degrees r and theta are no global axes, but z is one, and both together are the x-y plane.
TEST(NastranSupports, InASkewSystemWholePlanesAndSpacesCanBeSupported) {
  EXPECT_EQ(TurnedRestraints("SPC1,1,3,4\n"), "4: 0 0 1 0 0 0\n");
  EXPECT_EQ(TurnedRestraints("SPC1,1,12,4\n"), "4: 1 1 0 0 0 0\n");
  EXPECT_EQ(TurnedRestraints("SPC1,1,123456,4\n"), "4: 1 1 1 1 1 1\n");
  EXPECT_EQ(TurnedRestraints("SPC1,1,2,4\nSPC1,1,1,4\n"), "4: 1 1 0 0 0 0\n");
}

TEST(NastranSupports, ASingleDirectionOfASkewSystemIsRefused) {
  for (const char* components : {"1", "2", "13", "23", "124"}) {
    const ImportedDeck deck =
        ImportDeckText(std::string(Systems) + "SPC1,1," + components + ",4\n");
    EXPECT_EQ(EntriesText(deck.report, Fate::Refused),
              "GRID|it is supported along axes of its system (CD) that are not the global "
              "ones|1\n")
        << components;
  }
}

std::string Prescribed(const ImportedDeck& deck, std::size_t row) {
  std::string text;
  for (const PrescribedDof& each : deck.model.cases.at(row).prescribed) {
    text += std::to_string(deck.model.nodeNumbers[static_cast<std::size_t>(each.node)]) + '.' +
            std::to_string(each.dof) + '=' + std::to_string(each.value) + ' ';
  }
  return text;
}

// Node 5 lies on the axis of system 6: one of r and theta alone has no direction there. With both
// the plane is held, whatever the angle is, but a displacement in it has no direction.
TEST(NastranSupports, OnTheAxisOfASystemTheAngleIsZeroAndReported) {
  const auto limited = [](const std::string& cards) {
    return EntriesText(ImportDeckText(std::string(Systems) + "GRID,5,,0.,0.,2.,6\n" + cards).report,
                       Fate::Limited, "GRID");
  };
  const std::string told =
      "GRID|on the axis of its cylindrical or spherical system: the angle there is taken as 0|1\n";
  for (const char* components : {"1", "2", "13", "1235", "4"}) {
    EXPECT_EQ(limited(std::string("SPC1,1,") + components + ",5\n"), told) << components;
  }
  for (const char* components : {"3", "12", "36", "123456"}) {
    EXPECT_EQ(limited(std::string("SPC1,1,") + components + ",5\n"), "") << components;
  }
  EXPECT_EQ(limited("SPC1,1,123,5\nSPC,1,5,1,.5\n"), told);
  EXPECT_EQ(limited("SPC1,1,123,5\nSPC,1,5,3,.5\n"), "");
  EXPECT_EQ(limited("SPC,1,5,1,.5\n"), told);
  EXPECT_EQ(limited("SPC1,1,1,2\n"), "");
}

TEST(NastranSupports, AnSpcMayPrescribeADisplacement) {
  const ImportedDeck deck = ImportDeckText(std::string("SOL 101\nCEND\nSPC = 4\n") + Line +
                                           "SPC,4,2,3,-2.5,3,45,.125\nSPC1,4,123456,2\n");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  EXPECT_EQ(Prescribed(deck, 0), "2.2=-2.500000 3.3=0.125000 3.4=0.125000 ");
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[0]), "2: 1 1 1 1 1 1\n3: 0 0 0 1 1 0\n");
}

// Node 1: component 2 is the global -x. Node 4: 1 along r is (1, 1) / sqrt(2).
TEST(NastranSupports, PrescribedDisplacementsAreTurnedWithTheSystem) {
  const ImportedDeck deck =
      ImportDeckText(std::string(Systems) + "SPC,1,1,2,2.5,4,1,1.\nSPC1,1,2,4\n");
  EXPECT_EQ(Prescribed(deck, 0), "1.0=-2.500000 4.0=0.707107 4.1=0.707107 ");
}

// The manuals: SPCD overrides the value of an SPC. LOAD scales it; a 0 counts, too.
TEST(NastranSupports, AnSpcdOverridesAnSpcAndIsScaled) {
  const ImportedDeck deck = ImportDeckText(
      std::string("SOL 101\nCEND\nSPC = 4\nSUBCASE 1\nSUBCASE 2\nLOAD=5\nSUBCASE 3\nLOAD=6\n") +
      Line + "SPC,4,2,3,-2.5,3,3,7.\nSPCD,5,2,3,1.5,3,3,0.\nLOAD,6,2.,3.,5\n");
  ASSERT_EQ(deck.model.cases.size(), 3U);
  EXPECT_EQ(Prescribed(deck, 0), "2.2=-2.500000 3.2=7.000000 ");
  EXPECT_EQ(Prescribed(deck, 1), "2.2=1.500000 ");
  EXPECT_EQ(Prescribed(deck, 2), "2.2=9.000000 ");
}

TEST(NastranSupports, AnSpcdWhereNothingIsHeldIsRefused) {
  EXPECT_EQ(RefusedOf("SPC = 4\nLOAD = 5\n", "SPC1,4,12,2\nSPCD,5,2,13,1.5\n"),
            "SPCD|it moves a direction that no support of its subcase holds|1\n");
}

TEST(NastranSupports, TwoDisplacementsForOneDirectionAreRefused) {
  EXPECT_EQ(RefusedOf("SPC = 4\n", "SPC,4,2,3,1.5\nSPC,4,2,3,1.5\nSPC,4,2,3,1.75\n"),
            "SPC|another card has another displacement for the same direction|1\n");
}

}  // namespace
}  // namespace kvx::test
