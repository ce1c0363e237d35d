// Decks that ask for more than they hold: each must end soon and with little memory.
#include <gtest/gtest.h>

#include "mesh/abaqus/import_deck.h"

namespace kvx::test {
namespace {

constexpr const char* TooMuch =
    "the sets and loads of the deck name more nodes and elements than can be meant";

std::string Repeat(const std::string& text, int times) {
  std::string repeated;
  for (int k = 0; k < times; ++k) repeated += text;
  return repeated;
}

std::string ManyNodes(int count) {
  std::string text = "*NODE,NSET=ALL\n";
  for (int k = 1; k <= count; ++k) text += std::to_string(k) + ",0,0,0\n";
  return text;
}

// Ten thousand nodes loaded on each of ten thousand lines are a hundred million rows.
TEST(AbaqusHostile, LoadsOnAllByEachLine) {
  const std::string stop =
      StopOfDeck(ManyNodes(10000) + "*STEP\n" + "*CLOAD\n" + Repeat("ALL,1,1.\n", 10000));
  EXPECT_NE(stop.find(TooMuch), std::string::npos) << stop;
}

TEST(AbaqusHostile, SetsOfAllInEachSet) {
  std::string text = ManyNodes(10000);
  for (int k = 0; k < 10000; ++k) text += "*NSET,NSET=S" + std::to_string(k) + "\nALL\n";
  EXPECT_NE(StopOfDeck(text).find(TooMuch), std::string::npos);
}

TEST(AbaqusHostile, RangesOfAllOnEachLine) {
  EXPECT_NE(StopOfDeck(ManyNodes(10000) + "*NSET,NSET=A,GENERATE\n" + Repeat("1,10000,9\n", 10000))
                .find(TooMuch),
            std::string::npos);
}

TEST(AbaqusHostile, StepsThatCarryManyLoads) {
  EXPECT_NE(StopOfDeck(ManyNodes(10000) + "*STEP\n*CLOAD\nALL,1,1.\n*END STEP\n" +
                       Repeat("*STEP\n*END STEP\n", 10000))
                .find(TooMuch),
            std::string::npos);
}

// Each line has a direction of its own, which each *DLOAD and each OP=NEW would go through.
TEST(AbaqusHostile, DirectionsWithoutEnd) {
  std::string text = "*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n*ELEMENT,TYPE=S3\n1,1,2,3\n";
  for (int k = 0; k < 3000; ++k) {
    text += "*STEP\n*DYNAMIC\n*DLOAD\n1,TRVEC,1.,1.,0.," + std::to_string(k) + "\n*END STEP\n";
  }
  EXPECT_NE(StopOfDeck(text).find(TooMuch), std::string::npos);
}

// The same set again within a set, and a set in itself, cost nothing.
TEST(AbaqusHostile, ASetMayNameASetOften) {
  const ImportedDeck deck =
      ImportDeck(ManyNodes(10000) + "*NSET,NSET=A\n" + Repeat("ALL,A\n", 10000));
  EXPECT_EQ(GroupNamed(deck, "A").nodes.size(), 10000U);
}

// A range is as long as what exists in it, not as its numbers say.
TEST(AbaqusHostile, RangesOfNumbersThatAreNotThere) {
  const ImportedDeck deck = ImportDeck(
      "*NODE\n1,0,0,0\n9000000000000000000,1,0,0\n*NSET,NSET=A,GENERATE\n"
      "1,9223372036854775807\n0,9223372036854775807,9223372036854775807\n");
  EXPECT_EQ(GroupNamed(deck, "A").nodes.size(), 2U);
  EXPECT_EQ(StopOfDeck("*NODE\n1,0,0,0\n*NSET,NSET=A,GENERATE\n1,5,0\n"),
            "\"deck.inp\", line 4: GENERATE has first, last and a step of 1 or more");
}

TEST(AbaqusHostile, EmptyDecksAreEmptyModels) {
  for (const char* text :
       {"", "\n\n", "** nothing\n", "*", "*HEADING", "*,", "*NODE,\n", "*STEP"}) {
    const ImportedDeck deck = ImportDeck(text);
    EXPECT_TRUE(deck.model.nodes.empty()) << text;
  }
}

}  // namespace
}  // namespace kvx::test
