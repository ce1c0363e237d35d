// How lines of bulk data become cards. Each expected field list is read off the deck's text by
// hand.
#include "mesh/nastran/nastran_deck.h"

#include <gtest/gtest.h>

#include "mesh/nastran/read_deck.h"

namespace kvx::test {
namespace {

// All cards of a bulk-only deck as "NAME: fields".
std::vector<std::string> Cards(const std::string& text, const IncludedTexts& included = {}) {
  DeckOfText read;
  ReadDeckText(text, read, included);
  std::vector<std::string> cards;
  for (std::size_t k = 0; k < read.deck.cards.size(); ++k) {
    cards.push_back(std::string(read.deck.cards[k].name) + ": " + FieldsText(read, k));
  }
  return cards;
}

using Texts = std::vector<std::string>;

TEST(NastranDeck, SmallFieldsAreEightWide) {
  EXPECT_EQ(Cards("GRID    1       2       3.      4.      5.      6       123     7       mark\n"),
            Texts{"GRID: 1|2|3.|4.|5.|6|123|7"});
}

TEST(NastranDeck, NeighbouringFieldsNeedNoBlank) {
  EXPECT_EQ(Cards("PBEAM          1       20.0012501.2651-61.2651-6        1.6577-8\n"),
            Texts{"PBEAM: 1|2|0.001250|1.2651-6|1.2651-6||1.6577-8"});
  EXPECT_EQ(Cards("GRID    12345678       11.234567-1.23456\n"),
            Texts{"GRID: 12345678|1|1.234567|-1.23456"});
}

TEST(NastranDeck, TwoLargeLinesAreOneOfEightFields) {
  EXPECT_EQ(Cards("GRID*                  1               0     0.100000000             0.0+\n"
                  "*           -1.000000000               7             123\n"),
            Texts{"GRID: 1|0|0.100000000|0.0|-1.000000000|7|123"});
}

// A card of large fields whose second line is left out: what follows begins with field 12.
TEST(NastranDeck, SmallContinuationOfOneLargeLineBeginsWithField12) {
  EXPECT_EQ(Cards("PBARL*                 1               2                               T\n"
                  "+       10.     20.\n"),
            Texts{"PBARL: 1|2||T|||||10.|20."});
  EXPECT_EQ(Cards("PBARL   1       2               T\n"
                  "*                    10.             20.             30.             40.\n"
                  "*                    50.\n"),
            Texts{"PBARL: 1|2||T|||||10.|20.|30.|40.|50."});
}

TEST(NastranDeck, FreeFieldsStandBetweenCommas) {
  EXPECT_EQ(Cards("CBAR, 10, 100, 1, 2, 0., 1., 0.\n"), Texts{"CBAR: 10|100|1|2|0.|1.|0."});
  EXPECT_EQ(Cards("GRID,11,,0.,0.,1.\n"), Texts{"GRID: 11||0.|0.|1."});
  // Large free lines have four data fields.
  EXPECT_EQ(Cards("GRID*,11,,0.5,0.25\n*,1.\n"), Texts{"GRID: 11||0.5|0.25|1."});
}

TEST(NastranDeck, FormatsMixFromLineToLine) {
  EXPECT_EQ(Cards("PBARL   100     1000            T\n,10.,24.\n"),
            Texts{"PBARL: 100|1000||T|||||10.|24."});
  EXPECT_EQ(Cards("PBARL,100,1000,,T\n+       10.     24.\n"),
            Texts{"PBARL: 100|1000||T|||||10.|24."});
}

TEST(NastranDeck, CommaBehindTheTenthColumnIsNoFreeLine) {
  EXPECT_EQ(Cards("PARAM   NAME    A,B\n"), Texts{"PARAM: NAME|A,B"});
}

TEST(NastranDeck, CommasAtTheEndAddNothing) {
  EXPECT_EQ(Cards("PBARL, 100, 1000,, T,,,,,\n,10., 24., 0.24, 1.\n"),
            Texts{"PBARL: 100|1000||T|||||10.|24.|0.24|1."});
}

// Field 10 of a free line is its mark: a ninth number there would be lost.
TEST(NastranDeck, MoreThanEightFreeFieldsAreRefused) {
  const std::string stop = "more than eight data fields between commas";
  EXPECT_NE(DeckStopText("SPC1,1,123,1,2,3,4,5,6,7\n").find(stop), std::string::npos);
  EXPECT_NE(DeckStopText("SPC1,1,123,1,2,3,4,5,6,,8\n").find(stop), std::string::npos);
  EXPECT_EQ(Cards("SPC1,1,123,1,2,3,4,5,6\n"), Texts{"SPC1: 1|123|1|2|3|4|5|6"});
}

TEST(NastranDeck, PlusBetweenCommasBeginsTheNextLine) {
  EXPECT_EQ(Cards("SPC1,1,123,1,2,3,4,5,6,+,7,8\n"), Texts{"SPC1: 1|123|1|2|3|4|5|6|7|8"});
}

TEST(NastranDeck, TabGoesToTheNextMultipleOfEight) {
  EXPECT_EQ(Cards("CBAR\t10\t100\t11\t12\t0.\t1.\t0.\tGGG\n"),
            Texts{"CBAR: 10|100|11|12|0.|1.|0.|GGG"});
  // Two tabs are an empty field; a full field before a tab leaves one empty, too.
  EXPECT_EQ(Cards("GRID\t1\t\t0.\n"), Texts{"GRID: 1||0."});
  EXPECT_EQ(Cards("GRID\t12345678\t5.\n"), Texts{"GRID: 12345678||5."});
  EXPECT_EQ(Cards("GRID*\t1\t\t\t\t2.5\n"), Texts{"GRID: 1||2.5"});
}

TEST(NastranDeck, CommentsStandAnywhere) {
  EXPECT_EQ(Cards("$ first\nCBAR    1       2 $ behind\n$ between\n        $ a blank line is none\n"
                  "\n+       3\n$ last"),
            Texts{"CBAR: 1|2|||||||3"});
}

TEST(NastranDeck, TextBehindColumn80IsNotRead) {
  EXPECT_EQ(Cards("DEBUG   192     2                                                       "
                  "GPFO summary, 3\nGRID    1\n"),
            (Texts{"DEBUG: 192|2", "GRID: 1"}));
}

TEST(NastranDeck, UnmarkedContinuationsFollowTheirLine) {
  const std::string first = "PBEAML  1       2               L\n";
  const Texts expected{"PBEAML: 1|2||L|||||10."};
  EXPECT_EQ(Cards(first + "        10.\n"), expected);
  EXPECT_EQ(Cards(first + "+       10.\n"), expected);
  EXPECT_EQ(Cards(first + ",10.\n"), expected);
  EXPECT_EQ(Cards(first + "+,10.\n"), expected);
  // An empty one counts.
  EXPECT_EQ(Cards("CBEAM   1\n+\n+       5\n"), Texts{"CBEAM: 1||||||||||||||||5"});
}

TEST(NastranDeck, MarkedContinuationsMayStandAnywhere) {
  const std::string a =
      "CBAR    1       2       3       4       5.      6.      7.              +A1\n";
  const std::string b =
      "CBAR    11      12      13      14      15.     16.     17.             +B1\n";
  const std::string a2 =
      "+A1             8                                                       +A2\n";
  const std::string a3 = "+A2     9\n";
  const std::string b2 = "+B1             18\n";
  const Texts expected{"CBAR: 1|2|3|4|5.|6.|7.|||8|||||||9", "CBAR: 11|12|13|14|15.|16.|17.|||18"};
  EXPECT_EQ(Cards(a + a2 + a3 + b + b2), expected);
  EXPECT_EQ(Cards(a + b + b2 + a2 + a3), expected);
  EXPECT_EQ(Cards(a3 + b2 + a + b + a2), expected);
  EXPECT_EQ(Cards(a + b + a3 + b2 + a2), expected);
  // Lines without a mark stay with the line before them.
  EXPECT_EQ(Cards(a + b + b2 + a2 + "+       30\n"),
            (Texts{"CBAR: 1|2|3|4|5.|6.|7.|||8|||||||30", "CBAR: 11|12|13|14|15.|16.|17.|||18"}));
}

// Column 73 is not part of the mark.
TEST(NastranDeck, MarkIsWhatStandsBehindColumn73) {
  EXPECT_EQ(Cards("CBAR    1                                                               ABC\n"
                  "GRID    5\n+BC     9\n"),
            (Texts{"CBAR: 1||||||||9", "GRID: 5"}));
  EXPECT_EQ(Cards("CBAR,1,,,,,,,,+X\nGRID,5\n+X,9\n"), (Texts{"CBAR: 1||||||||9", "GRID: 5"}));
}

TEST(NastranDeck, LargeHalvesMayStandApart) {
  EXPECT_EQ(Cards("GRID*                  1                             1.0             2.0*G1\n"
                  "GRID    2\n"
                  "*G1                  3.0\n"),
            (Texts{"GRID: 1||1.0|2.0|3.0", "GRID: 2"}));
}

TEST(NastranDeck, ContinuationsWithoutCardAreRefused) {
  EXPECT_EQ(DeckStopText("GRID    1\n+A      2\n"),
            "\"deck.bdf\", line 2: no line ends with the mark \"A\" of this one");
  EXPECT_EQ(DeckStopText("+       2\n"),
            "\"deck.bdf\", line 1: this line continues a card, but there is none before it");
  const std::string end = "                                                                +A\n";
  EXPECT_EQ(DeckStopText("GRID    " + end + "CBAR    " + end + "GRID    1\n+A      3\n"),
            "\"deck.bdf\", line 4: several lines end with the mark \"A\"");
  EXPECT_EQ(DeckStopText("GRID    " + end + "GRID    1\n+A      3\nGRID    2\n+A      4\n"),
            "\"deck.bdf\", line 5: a second continuation marked \"A\"");
}

// The same mark on every card, as some programs write it, does no harm where the lines are in
// order.
TEST(NastranDeck, MarksMayRepeatWhereTheLinesAreInOrder) {
  const std::string card =
      "CBAR    1                                                               +C\n+C      2\n";
  EXPECT_EQ(Cards(card + card), (Texts{"CBAR: 1||||||||2", "CBAR: 1||||||||2"}));
}

TEST(NastranDeck, LowerCaseIsUpperCase) {
  EXPECT_EQ(Cards("spc1,1,123,5,thru,1.5e+3,1.5d3\n"), Texts{"SPC1: 1|123|5|THRU|1.5e+3|1.5d3"});
  EXPECT_EQ(Cards("grid*                  1\n*\n"), Texts{"GRID: 1"});
}

TEST(NastranDeck, RepeatedCardsAreRefused) {
  const std::string stop = "repeated cards";
  EXPECT_NE(DeckStopText("GRID,1,,0.,0.,0.\n=,*(1),=,*(1.),==\n=(4)\n").find(stop),
            std::string::npos);
  EXPECT_NE(DeckStopText("GRID,1,,0.,0.,0.\nGRID,2,=,=,=,=\n").find(stop), std::string::npos);
  EXPECT_NE(DeckStopText("GRID    1\n=       *(1)\n").find(stop), std::string::npos);
}

TEST(NastranDeck, EquationsAreText) {
  EXPECT_EQ(Cards("DEQATN  10      F(A,B,C)=A+B\n        =C+D\n+       E,F\nGRID,1\n"),
            (Texts{"DEQATN: 10|F(A,B,C)|=A+B", "GRID: 1"}));
}

TEST(NastranDeck, LinesThatAreNoCardAreRefused) {
  EXPECT_EQ(DeckStopText("GRID    1\n12345\n"),
            "\"deck.bdf\", line 2: \"12345\" is no name of a card");
  EXPECT_EQ(DeckStopText("GRID 1 2\n"), "\"deck.bdf\", line 1: \"GRID 1 2\" is no name of a card");
  EXPECT_EQ(DeckStopText("\x01\xFF\n"), "\"deck.bdf\", line 1: \"??\" is no name of a card");
}

TEST(NastranDeck, NothingIsReadBehindEnddata) {
  EXPECT_EQ(Cards("GRID    1\nENDDATA\n12345\nGRID    2\n"), Texts{"GRID: 1"});
  EXPECT_EQ(Cards("GRID    1\nenddata $ here\nGRID    2\n"), Texts{"GRID: 1"});
}

// Whoever includes a file that ends with ENDDATA may not know that it ends the deck, too.
TEST(NastranDeck, WhatStandsBehindEnddataIsReported) {
  DeckOfText read;
  ReadDeckText("GRID,1\nINCLUDE 'a'\nFORCE,1,1,,1.,1.\n$ a comment\n\nCONM2,9,1,,4.\n", read,
               {{"a", "GRID,2\nENDDATA\n"}});
  ASSERT_EQ(read.report.entries.size(), 1U);
  const ReportEntry& entry = read.report.entries[0];
  EXPECT_EQ(entry.card, "ENDDATA");
  EXPECT_EQ(entry.fate, Fate::Lost);
  EXPECT_EQ(entry.reason, "the lines behind it are not read");
  EXPECT_EQ(entry.count, 2U);
  EXPECT_EQ(entry.first.file, 0);
  EXPECT_EQ(entry.first.line, 3U);
  EXPECT_EQ(entry.example, "\"FORCE\"");
  EXPECT_EQ(read.report.cards.count("FORCE"), 0U);
}

// Programs write a checksum behind the word, and a deck may end once more behind its included file.
TEST(NastranDeck, CommentsAndBlankLinesBehindEnddataAreNothing) {
  DeckOfText read;
  ReadDeckText("GRID,1\nENDDATA 58e050da\n\n  \n$ GRID,2\nENDDATA\n", read);
  EXPECT_TRUE(read.report.entries.empty());
}

TEST(NastranDeck, LineEndsAndByteOrderMarksOfOtherSystems) {
  EXPECT_EQ(Cards("\xEF\xBB\xBFGRID    1\r\nGRID    2\r\n"), (Texts{"GRID: 1", "GRID: 2"}));
}

TEST(NastranDeck, FieldsHaveTheNumbersOfTheManuals) {
  DeckOfText read;
  ReadDeckText("CBAR,1,2,3,4,5,6,7,8\n,12,13,14,15,16,17,18,19\n,22\n", read);
  const NastranCard& card = read.deck.cards.at(0);
  EXPECT_EQ(card.fieldCount, 24U);
  EXPECT_EQ(FieldOf(read.deck, card, 2), "1");
  EXPECT_EQ(FieldOf(read.deck, card, 9), "8");
  EXPECT_EQ(FieldOf(read.deck, card, 10), "");
  EXPECT_EQ(FieldOf(read.deck, card, 11), "");
  EXPECT_EQ(FieldOf(read.deck, card, 12), "12");
  EXPECT_EQ(FieldOf(read.deck, card, 19), "19");
  EXPECT_EQ(FieldOf(read.deck, card, 22), "22");
  EXPECT_EQ(FieldOf(read.deck, card, 29), "");
  EXPECT_EQ(FieldOf(read.deck, card, 32), "");
}

TEST(NastranDeck, IncludedFilesStandWhereTheyAreNamed) {
  const IncludedTexts files{{"a.inc", "GRID    2\nINCLUDE \"sub/b.inc\"\nGRID    4\n"},
                            {"sub/b.inc", "GRID    3"},
                            {"folder/part.inc", "GRID    7\n"}};
  EXPECT_EQ(Cards("GRID    1\nINCLUDE 'a.inc'\nGRID    5\n", files),
            (Texts{"GRID: 1", "GRID: 2", "GRID: 3", "GRID: 4", "GRID: 5"}));
  EXPECT_EQ(Cards("include a.inc\n", files), (Texts{"GRID: 2", "GRID: 3", "GRID: 4"}));
  EXPECT_EQ(Cards("INCLUDE 'folder/\n$ a comment\n  part.inc'\nGRID    8\n", files),
            (Texts{"GRID: 7", "GRID: 8"}));
  // Twice is not a circle.
  EXPECT_EQ(Cards("INCLUDE 'sub/b.inc'\nINCLUDE 'sub/b.inc'\n", files),
            (Texts{"GRID: 3", "GRID: 3"}));
}

TEST(NastranDeck, PlacesOfIncludedCardsNameTheirFile) {
  DeckOfText read;
  ReadDeckText("GRID    1\nINCLUDE 'a.inc'\nGRID    5\n", read, {{"a.inc", "\nGRID    2\n"}});
  EXPECT_EQ(read.report.files, (Texts{"deck.bdf", "a.inc"}));
  EXPECT_EQ(read.deck.cards.at(1).place.file, 1);
  EXPECT_EQ(read.deck.cards.at(1).place.line, 2U);
  EXPECT_EQ(read.deck.cards.at(2).place.file, 0);
  EXPECT_EQ(read.deck.cards.at(2).place.line, 3U);
  EXPECT_EQ(read.report.cards.at("INCLUDE").count, 1U);
}

TEST(NastranDeck, EnddataOfAnIncludedFileEndsTheDeck) {
  EXPECT_EQ(Cards("INCLUDE 'a.inc'\nGRID    5\n", {{"a.inc", "GRID    1\nENDDATA\nGRID    2\n"}}),
            Texts{"GRID: 1"});
}

TEST(NastranDeck, IncludesThatCannotBeReadAreNamed) {
  EXPECT_EQ(DeckStopText("GRID    1\nINCLUDE 'geom.inc'\n"),
            "\"deck.bdf\", line 2: the included file 'geom.inc' cannot be read");
  EXPECT_EQ(DeckStopText("INCLUDE 'a'\n", {{"a", "INCLUDE 'b'\n"}, {"b", "\nINCLUDE 'a'\n"}}),
            "\"b\", line 2: the file 'a' includes itself");
  EXPECT_EQ(DeckStopText("INCLUDE 'a\nGRID    1\n"),
            "\"deck.bdf\", line 1: the name of INCLUDE has no closing quote");
  EXPECT_EQ(DeckStopText("INCLUDE\n"), "\"deck.bdf\", line 1: INCLUDE names no file");
}

// Files that double at each of 20 levels would be a million.
TEST(NastranDeck, FilesThatMultiplyAreRefused) {
  IncludedTexts files;
  for (int k = 0; k < 20; ++k) {
    const std::string next = "INCLUDE 'f" + std::to_string(k + 1) + "'\n";
    files["f" + std::to_string(k)] = next + next;
  }
  files["f20"] = "GRID    1\n";
  EXPECT_NE(DeckStopText("INCLUDE 'f0'\n", files).find("more than 10000 files are included"),
            std::string::npos);
  for (int k = 0; k < 200; ++k)
    files["g" + std::to_string(k)] = "INCLUDE 'g" + std::to_string(k + 1) + "'\n";
  EXPECT_NE(DeckStopText("INCLUDE 'g0'\n", files).find("more than 100 files include one another"),
            std::string::npos);
}

TEST(NastranDeck, ControlStandsAboveBeginBulk) {
  DeckOfText read;
  ReadDeckText(
      "ID A,B\nSOL 101\nCEND\nTITLE = Some Text,\nspc = 2\nSUBCASE 5\n  load = 7 $ x\n"
      "SET 1 = 1,2,\n  3\nbegin bulk\nGRID    1\nENDDATA\n",
      read);
  ASSERT_EQ(read.deck.commands.size(), 5U);
  const auto& commands = read.deck.commands;
  EXPECT_EQ(commands[0].text, "TITLE = Some Text,");
  EXPECT_EQ(commands[1].text, "SPC = 2");
  EXPECT_EQ(commands[1].subcase, 0);
  EXPECT_EQ(commands[2].text, "SUBCASE 5");
  EXPECT_EQ(commands[3].text, "LOAD = 7");
  EXPECT_EQ(commands[3].subcase, 5);
  EXPECT_EQ(commands[3].place.line, 7U);
  EXPECT_EQ(commands[4].text, "SET 1 = 1,2, 3");
  EXPECT_EQ(read.deck.cards.size(), 1U);
  Texts counted;
  for (const auto& [name, count] : read.report.cards) {
    counted.push_back(name + " " + std::to_string(count.count));
  }
  EXPECT_EQ(counted, (Texts{"BEGIN BULK 1", "ENDDATA 1", "GRID 1", "case control LOAD 1",
                            "case control SET 1", "case control SPC 1", "case control SUBCASE 1",
                            "case control TITLE 1", "executive CEND 1", "executive ID 1",
                            "executive SOL 1"}));
}

TEST(NastranDeck, ControlMayBeIncluded) {
  DeckOfText read;
  ReadDeckText("INCLUDE 'exec'\nINCLUDE 'case'\nBEGIN BULK\nGRID,1\n", read,
               {{"exec", "SOL 101\nCEND\n"}, {"case", "LOAD = 1\n"}});
  EXPECT_EQ(read.deck.commands.size(), 1U);
  EXPECT_EQ(read.deck.cards.size(), 1U);
  DeckOfText all;
  ReadDeckText("$ all in one\nINCLUDE 'all'\nGRID,2\n", all,
               {{"all", "LOAD=1\nBEGIN BULK\nGRID,1\n"}});
  EXPECT_EQ(all.deck.commands.size(), 1U);
  EXPECT_EQ(all.deck.cards.size(), 2U);
}

TEST(NastranDeck, DeckWithoutBeginIsBulkData) {
  EXPECT_EQ(Cards("$punch\nGRID, 1,, 0., 0., 0.\n\nMAT1, 1000, 3.0e7,,0.3\n"),
            (Texts{"GRID: 1||0.|0.|0.", "MAT1: 1000|3.0e7||0.3"}));
  // In a comment or behind ENDDATA the words mean nothing.
  EXPECT_EQ(Cards("LOAD    1       1.\n$ BEGIN BULK\nENDDATA\nBEGIN BULK\n"), Texts{"LOAD: 1|1."});
  EXPECT_EQ(DeckStopText("SOL 101\nCEND\nLOAD = 1\n"), "\"deck.bdf\": there is no BEGIN BULK");
}

TEST(NastranDeck, OnlyLinearStaticsIsDone) {
  DeckOfText read;
  ReadDeckText("SOL 103\nTIME 5\nCEND\nBEGIN BULK\nENDDATA\n", read);
  ASSERT_EQ(read.report.entries.size(), 2U);
  EXPECT_EQ(read.report.entries[0].card, "executive SOL");
  EXPECT_EQ(read.report.entries[0].fate, Fate::Limited);
  EXPECT_EQ(read.report.entries[0].example, "SOL 103");
  EXPECT_EQ(read.report.entries[1].card, "executive TIME");
  EXPECT_EQ(read.report.entries[1].fate, Fate::NoEffect);
  for (const std::string sol : {"101", "1", "SESTATIC", "24", "1,0"}) {
    DeckOfText plain;
    ReadDeckText("SOL " + sol + "\nCEND\nBEGIN BULK\nENDDATA\n", plain);
    EXPECT_TRUE(plain.report.entries.empty()) << sol;
  }
}

TEST(NastranDeck, SuperelementsAreRefused) {
  EXPECT_NE(DeckStopText("CEND\nBEGIN BULK\nGRID,1\nBEGIN SUPER=1\n").find("superelements"),
            std::string::npos);
  EXPECT_NE(DeckStopText("CEND\nBEGIN SUPER=1\n").find("superelements"), std::string::npos);
}

}  // namespace
}  // namespace kvx::test
