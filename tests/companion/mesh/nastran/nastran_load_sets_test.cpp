// Sets of loads and what LOAD cards make of them.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "mesh/nastran/load_sums.h"
#include "mesh/nastran/nastran_load_leaf.h"
#include "mesh/nastran/nastran_load_sets.h"
#include "mesh/nastran/nastran_support_cards.h"
#include "mesh/nastran/nastran_supports.h"
#include "mesh/nastran/read_deck.h"

namespace kvx::test {
namespace {

const char* const Nodes = "BEGIN BULK\nGRID,1,,0.,0.,0.,,123456\nGRID,2,,1.,0.,0.\n";

ImportedDeck Import(const std::string& control, const std::string& cards) {
  return ImportDeckText("SOL 101\nCEND\n" + control + Nodes + cards);
}

// The force along x at node 2 of the first case.
double ForceOf(const std::string& cards) {
  const ImportedDeck deck = Import("LOAD = 1\n", cards);
  EXPECT_EQ(EntriesText(deck.report, Fate::Refused), "");
  return deck.model.cases.size() == 1 ? SumLoads(deck.model, deck.model.cases[0])[0] : -1.0;
}

TEST(NastranLoadSets, LoadScalesTwice) {
  // 2 (3 x 10 + 5 x 100)
  EXPECT_NEAR(ForceOf("LOAD,1,2.,3.,11,5.,12\nFORCE,11,2,,10.,1.\nFORCE,12,2,,100.,1.\n"), 1060.0,
              1e-9);
}

TEST(NastranLoadSets, ASetNamedTwiceAddsUp) {
  EXPECT_NEAR(ForceOf("LOAD,1,2.,3.,11,-1.,11\nFORCE,11,2,,10.,1.\n"), 40.0, 1e-12);
}

TEST(NastranLoadSets, ALoadGoesOnOverLines) {
  // The sum of k times 10^(k-11) for the sets 11 to 14: 1 + 20 + 300 + 4000.
  EXPECT_NEAR(ForceOf("LOAD,1,1.,1.,11,2.,12,3.,13\n,4.,14\nFORCE,11,2,,1.,1.\nFORCE,12,2,,10.,"
                      "1.\nFORCE,13,2,,100.,1.\nFORCE,14,2,,1000.,1.\n"),
              4321.0, 1e-9);
}

// The manuals forbid it, and decks have it. 13 (11 x 1 + 17 x 3 + 1.1 (5 x 7 x 1)) = 1306.5.
TEST(NastranLoadSets, ALoadMayNameALoad) {
  EXPECT_NEAR(ForceOf("LOAD,7,5.,7.,11\nLOAD,1,13.,11.,11,17.,15,1.1,7\nFORCE,11,2,,1.,1.\nFORCE,"
                      "15,2,,3.,1.\n"),
              1306.5, 1e-9);
}

// Both ways to set 11 count: 2 x 3 + 5 x 7.
TEST(NastranLoadSets, ASetMayBeReachedInTwoWays) {
  EXPECT_NEAR(ForceOf("LOAD,1,1.,2.,21,5.,22\nLOAD,21,3.,1.,11\nLOAD,22,7.,1.,11\nFORCE,11,2,,1.,"
                      "1.\n"),
              41.0, 1e-12);
}

// Sixty LOADs that name the one before them twice: 2^60 ways, each set read once.
TEST(NastranLoadSets, ALadderOfLoadsCostsNoMoreThanItsLength) {
  std::string cards = "LOAD,1,1.,1.,160\nFORCE,100,2,,1.,1.\n";
  for (int k = 101; k <= 160; ++k) {
    const std::string below = std::to_string(k - 1);
    cards += "LOAD," + std::to_string(k) + ",1.,1.," + below + ",1.," + below + '\n';
  }
  EXPECT_EQ(ForceOf(cards), 1152921504606846976.0);
}

TEST(NastranLoadSets, ALongChainOfLoadsNeedsNoDeepCalls) {
  std::string cards = "LOAD,1,1.,1.,100\nFORCE,200100,2,,3.,1.\n";
  for (int k = 100; k < 200100; ++k) {
    cards += "LOAD," + std::to_string(k) + ",1.,1.," + std::to_string(k + 1) + '\n';
  }
  EXPECT_EQ(ForceOf(cards), 3.0);
}

TEST(NastranLoadSets, ACircleOfLoadsIsRefused) {
  const ImportedDeck deck = Import(
      "LOAD = 1\n", "LOAD,1,1.,1.,2\nLOAD,2,1.,1.,1,1.,11\nLOAD,5,1.,1.,5\nFORCE,11,2,,1.,1.\n");
  EXPECT_EQ(EntriesText(deck.report, Fate::Refused), "LOAD|its sets lead back to itself|1\n");
}

TEST(NastranLoadSets, WhatDoesNotExistIsRefused) {
  EXPECT_EQ(EntriesText(Import("LOAD = 1\n", "LOAD,1,1.,1.,11,1.,12\nFORCE,11,2,,1.,1.\n").report,
                        Fate::Refused),
            "LOAD|it names a set that does not exist|1\n");
  EXPECT_EQ(EntriesText(Import("LOAD = 1\n", "FORCE,11,2,,1.,1.\n").report, Fate::Refused),
            "case control LOAD|a subcase asks for a set of loads that does not exist|1\n");
}

// The command that asks is shown, and not the subcase that it holds for.
TEST(NastranLoadSets, AMissingSetIsShownWhereItIsAskedFor) {
  const ImportedDeck deck = Import("SUBCASE 1\nLABEL = a\nLOAD = 1\nSPC = 2\n", "");
  std::vector<std::size_t> lines;
  for (const ReportEntry& entry : deck.report.entries) {
    if (entry.fate == Fate::Refused) lines.push_back(entry.first.line);
  }
  EXPECT_EQ(lines, (std::vector<std::size_t>{6, 5}));
}

TEST(NastranLoadSets, ACaseTellsWhetherItAsksForLoads) {
  const ImportedDeck deck = Import("SUBCASE 1\nLOAD = 1\nSUBCASE 2\nSPC = 2\nLOAD = 3\n",
                                   "TEMP,1,2,20.\nSPC1,2,1,2\nFORCE,3,2,,1.,1.\n");
  ASSERT_EQ(deck.model.cases.size(), 2U);
  EXPECT_TRUE(deck.model.cases[0].asksForLoads) << "though all of them are lost";
  EXPECT_FALSE(
      ImportDeckText("BEGIN BULK\nGRID,1,,0.,0.,0.,,123\n").model.cases.at(0).asksForLoads);
}

TEST(NastranLoadSets, ALoadTakesThePlaceOfCardsWithItsNumber) {
  const ImportedDeck deck =
      Import("LOAD = 1\n", "LOAD,1,1.,1.,2\nFORCE,1,2,,1.,1.\nFORCE,2,2,,5.,1.\n");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  ExpectSums(deck, 0, {5, 0, 0, 0, 0, 0});
  EXPECT_EQ(EntriesText(deck.report, Fate::Lost),
            "FORCE|a LOAD of the same number takes its place|1\n");
}

TEST(NastranLoadSets, SetsThatNoSubcaseAsksForHaveNoEffect) {
  const ImportedDeck deck =
      Import("SUBCASE 1\nLOAD = 1\n",
             "FORCE,1,2,,1.,1.\nFORCE,2,99,,1.,1.\nMOMENT,2,2,,1.,1.\nLOAD,3,1.,"
             "1.,2\n");
  EXPECT_EQ(EntriesText(deck.report, Fate::NoEffect),
            "FORCE|no subcase asks for its set|1\n"
            "MOMENT|no subcase asks for its set|1\n"
            "LOAD|no subcase asks for its set|1\n");
  EXPECT_EQ(EntriesText(deck.report, Fate::Refused), "");
}

TEST(NastranLoadSets, ACardIsToldOfOnceHoweverManySubcasesAskForIt) {
  const ImportedDeck deck =
      Import("SUBCASE 1\nLOAD = 1\nSUBCASE 2\nLOAD = 2\n", "FORCE,1,99,,1.,1.\nLOAD,2,1.,1.,1\n");
  EXPECT_EQ(EntriesText(deck.report, Fate::Refused),
            "FORCE|it names a node that does not exist|1\n");
}

TEST(NastranLoadSets, GravityIsScaledToo) {
  const ImportedDeck deck =
      Import("LOAD = 1\n", "LOAD,1,2.,3.,2,5.,3\nGRAV,2,,10.,0.,0.,-1.\nGRAV,3,,1.,1.\n");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  EXPECT_EQ(deck.model.cases[0].acceleration[0], 10.0);
  EXPECT_EQ(deck.model.cases[0].acceleration[2], -60.0);
}

TEST(NastranLoadSets, ASubcaseWithoutLoadsIsLeftOutUnlessItMovesASupport) {
  const ImportedDeck deck =
      Import("LOAD = 1\nSUBCASE 1\nSUBCASE 2\nLOAD = 0\nSUBCASE 3\nLOAD = 0\nSPC = 5\n",
             "FORCE,1,2,,1.,1.\nSPC,5,1,1,.5\n");
  ASSERT_EQ(deck.model.cases.size(), 2U);
  EXPECT_EQ(deck.model.cases[0].name, "subcase 1");
  EXPECT_EQ(deck.model.cases[1].name, "subcase 3");
  EXPECT_EQ(EntriesText(deck.report, Fate::NoEffect),
            "case control SUBCASE|a subcase without loads|1\n");
}

// A short deck can ask for any number of loads and supports, by ranges, sums and subcases.
TEST(NastranLoadSets, MoreRowsThanMemoryHoldsEndTheImport) {
  DeckOfText read;
  std::string text = "BEGIN BULK\nSPC1,1,1,1,THRU,9\nLOAD,2,1.,1.,3\n";
  for (int k = 1; k <= 9; ++k) {
    const std::string number = std::to_string(k);
    text += "GRID," + number + ",," + number + ".\nFORCE,3," + number + ",,1.,1.\n";
  }
  ReadDeckText(text, read);
  ImportModel model;
  NastranNumbers numbers;
  NastranSystems systems;
  TakeNastranStructure(read.deck, model, numbers, systems, read.report);
  NastranLoadInput in = MakeNastranLoadInput(read.deck, numbers, systems, model, read.report);
  SupportSets supports = ReadSupportSets(in);
  LoadSets loads = ReadLoadSets(in);
  LoadLeaves leaves;
  const LoadLeaf& leaf = ReadLoadLeaf(3, loads, in, leaves);
  // Eight rows are too few for nine nodes and for the eight fields of a LOAD and its set.
  const auto stops = [&in](const std::function<void()>& action) {
    in.rowsLeft = 8;
    return StopText(action).find("supports and loads in all") != std::string::npos;
  };
  EXPECT_TRUE(stops([&] {
    LoadLeaves others;
    ReadLoadLeaf(3, loads, in, others);
  }));
  EXPECT_TRUE(stops([&] {
    ImportCase made;
    std::vector<SetDisplacement> displacements;
    AddScaled(leaf, 2.0, {}, in, made, displacements);
  }));
  EXPECT_TRUE(stops([&] { SelectSupports(1, {}, supports, in, model.supports); }));
  EXPECT_TRUE(stops([&] {
    FindScaledSets(2, loads, in);
    FindScaledSets(2, loads, in);
  }));
  EXPECT_FALSE(stops([&] { FindScaledSets(2, loads, in); }));
}

// Decks that are bulk data alone: what programs write that leave the case control to the user.
TEST(NastranLoadSets, WithoutCaseControlTheOnlySetsAreTaken) {
  const ImportedDeck deck = ImportDeckText(
      std::string(Nodes) + "FORCE,8,2,,3.,1.\nSPC1,4,1,2\nLOAD,9,2.,1.,8\nENDDATA\n");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  EXPECT_EQ(deck.model.cases[0].name, "");
  ExpectSums(deck, 0, {6, 0, 0, 0, 0, 0});
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[0]), "1: 1 1 1 1 1 1\n2: 1 0 0 0 0 0\n");
  EXPECT_EQ(EntriesText(deck.report, Fate::Limited),
            "SPC1|no case control asks for its set: the only one is taken|1\n"
            "LOAD|no case control asks for its set: taken as a load case|1\n");
}

TEST(NastranLoadSets, WithoutCaseControlEachSetOfLoadsIsACaseAndSeveralSupportsAreLost) {
  const ImportedDeck deck = ImportDeckText(
      std::string(Nodes) + "FORCE,8,2,,3.,1.\nFORCE,7,2,,4.,1.\nSPC1,4,1,2\nSPC1,5,2,2\n");
  ASSERT_EQ(deck.model.cases.size(), 2U);
  EXPECT_EQ(deck.model.cases[0].name, "load 7");
  EXPECT_EQ(deck.model.cases[1].name, "load 8");
  ExpectSums(deck, 1, {3, 0, 0, 0, 0, 0});
  EXPECT_EQ(RestraintsText(deck.model, deck.model.cases[1]), "1: 1 1 1 1 1 1\n");
  EXPECT_EQ(EntriesText(deck.report, Fate::Lost),
            "SPC1|no case control says which set of several holds|2\n");
}

TEST(NastranLoadSets, WithoutLoadsAndSupportsThereIsNoCase) {
  EXPECT_TRUE(ImportDeckText("BEGIN BULK\nGRID,2,,1.,0.,0.\n").model.cases.empty());
}

}  // namespace
}  // namespace kvx::test
