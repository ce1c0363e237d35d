// How lines become keywords, parameters and data; includes.
#include "mesh/abaqus/abaqus_deck.h"

#include <gtest/gtest.h>

#include "mesh/abaqus/import_deck.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;

// One shell of 1 x 1, so that nodes and elements have something to be read by.
constexpr const char* OneShell =
    "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n*ELEMENT,TYPE=S4,ELSET=E\n1,1,2,3,4\n";

TEST(AbaqusDeck, CaseAndBlanksOfKeywordsDoNotMatter) {
  const ImportedDeck deck = ImportDeck(
      "*Node\n1,0,0,0\n2 , 1. ,0,0\n3,1,1,\n4,,1,0\n"
      "*ELEMENT , type = s4 , elSet = Plate\n1,1,2,3,4\n"
      "*material,name=Steel\n*Elastic\n2,0\n*ShellSection, elset=PLATE, Material=STEEL\n.5\n");
  ASSERT_EQ(deck.model.shells.size(), 1U);
  EXPECT_EQ(deck.model.typeNames, Texts{"S4"});
  EXPECT_EQ(deck.model.groups[0].name, "Plate");  // as it is written first
  EXPECT_EQ(deck.model.thicknesses.at(0).TK, 0.5);
  EXPECT_EQ(deck.model.shells[0].material, 0);
  // Blank fields are zeros.
  EXPECT_EQ(deck.model.nodes[2].z, 0.0);
  EXPECT_EQ(deck.model.nodes[3].x, 0.0);
  EXPECT_EQ(deck.report.cards.count("*SHELL SECTION"), 1U);  // its name in the manuals
}

TEST(AbaqusDeck, CommentsAndBlankLinesMayStandAnywhere) {
  const ImportedDeck deck = ImportDeck(
      "** a deck\n\n*NODE\n** none\n1,0,0,0\n   \n2,1,0,0\n3,1,1,0\n*** three stars\n4,0,1,0\n"
      "*ELEMENT,TYPE=S4\n1,1,2,\n** within an element\n3,4\n");
  EXPECT_EQ(deck.model.nodes.size(), 4U);
  EXPECT_EQ(deck.model.shells.size(), 1U);
}

TEST(AbaqusDeck, KeywordLinesGoOnBehindAComma) {
  const ImportedDeck deck =
      ImportDeck(std::string(OneShell) + "*ELSET,\n** comment\n ELSET=A,\nGENERATE\n1,1\n");
  EXPECT_EQ(GroupNamed(deck, "A").shells, std::vector<std::int32_t>{0});
  EXPECT_EQ(deck.report.cards.at("*ELSET").count, 1U);
  // A comma before another keyword ends nothing.
  const ImportedDeck next = ImportDeck("*HEADING,\n*NODE\n1,0,0,0\n");
  EXPECT_EQ(next.model.nodes.size(), 1U);
  EXPECT_EQ(next.report.cards.count("*NODE"), 1U);
}

TEST(AbaqusDeck, QuotedNamesKeepCommasBlanksAndCase) {
  const ImportedDeck deck = ImportDeck(std::string(OneShell) +
                                       "*ELSET,ELSET=\"left, Upper deck\"\n1\n"
                                       "*ELSET,ELSET=B\n\"left, Upper deck\"\n");
  EXPECT_EQ(GroupNamed(deck, "left, Upper deck").shells.size(), 1U);
  EXPECT_EQ(GroupNamed(deck, "B").shells.size(), 1U);
}

// Unquoted names are the same in any case, and the same as a quoted one in upper case.
TEST(AbaqusDeck, QuotedNamesDifferByCase) {
  const ImportedDeck deck = ImportDeck(std::string(OneShell) +
                                       "*NSET,NSET=\"Up\"\n1\n*NSET,NSET=\"UP\"\n2\n"
                                       "*NSET,NSET=up\n3\n*NSET,NSET=A\nuP\n");
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "Up")), std::vector<std::int64_t>{1});
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "UP")), (std::vector<std::int64_t>{2, 3}));
  EXPECT_EQ(NodesOf(deck, GroupNamed(deck, "A")), (std::vector<std::int64_t>{2, 3}));
}

TEST(AbaqusDeck, WindowsLineEndsAndByteOrderMarkAreNoText) {
  const ImportedDeck deck =
      ImportDeck("\xEF\xBB\xBF*NODE, NSET=A\r\n1,1.,2.,3.\r\n*HEADING\r\n\r\n");
  EXPECT_EQ(deck.model.nodes.at(0).z, 3.0);
  EXPECT_EQ(GroupNamed(deck, "A").nodes.size(), 1U);
  EXPECT_EQ(deck.report.cards.size(), 2U);
}

TEST(AbaqusDeck, NumbersMayHaveDExponents) {
  const ImportedDeck deck = ImportDeck("*NODE\n1,1.5D2,-2.d-1,+3E0\n");
  EXPECT_EQ(deck.model.nodes.at(0).x, 150.0);
  EXPECT_EQ(deck.model.nodes.at(0).y, -0.2);
  EXPECT_EQ(deck.model.nodes.at(0).z, 3.0);
}

TEST(AbaqusDeck, WhatIsNoNumberStopsWithItsLine) {
  EXPECT_EQ(StopOfDeck("*NODE\n1,0,0,0\n2,1,O,0\n"), "\"deck.inp\", line 3: \"O\" is not a number");
  EXPECT_EQ(StopOfDeck("*NODE\n1 0 0 0\n"), "\"deck.inp\", line 2: \"1 0 0 0\" is not an integer");
  EXPECT_EQ(StopOfDeck("*NODE\n1.5,0,0,0\n"), "\"deck.inp\", line 2: \"1.5\" is not an integer");
  EXPECT_EQ(StopOfDeck("1,0,0,0\n"),
            "\"deck.inp\", line 1: a deck begins with a keyword: a line with a star");
}

TEST(AbaqusDeck, ATruncatedElementStops) {
  EXPECT_EQ(StopOfDeck("*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n"
                       "*ELEMENT,TYPE=S4\n1,1,2,3,4\n2,1,2,\n"),
            "\"deck.inp\", line 8: element 2 has 2 of its 4 nodes");
}

TEST(AbaqusDeck, IncludesStandInPlace) {
  const DeckTexts files{{"nodes.inp", "1,0,0,0\n2,1,0,0\n*INCLUDE, INPUT=sub/more.inp\n"},
                        {"sub/more.inp", "3,1,1,0\n4,0,1,0\n"},
                        {"e.inp", "1,1,2,3,4\n"}};
  const ImportedDeck deck = ImportDeck(
      "*NODE\n*INCLUDE, INPUT=nodes.inp\n5,5,5,5\n*ELEMENT, TYPE=S4, INPUT=\"e.inp\"\n", files);
  EXPECT_EQ(deck.model.nodeNumbers, (std::vector<std::int64_t>{1, 2, 3, 4, 5}));
  EXPECT_EQ(deck.model.shells.size(), 1U);
  EXPECT_EQ(deck.report.files, (Texts{"deck.inp", "nodes.inp", "sub/more.inp", "e.inp"}));
  EXPECT_EQ(deck.report.cards.at("*INCLUDE").count, 2U);
  EXPECT_EQ(deck.report.cards.at("*INCLUDE").first.line, 2U);
}

TEST(AbaqusDeck, PlacesInIncludedFilesNameThem) {
  EXPECT_EQ(StopOfDeck("*NODE\n*INCLUDE, INPUT=a\n", {{"a", "1,0,0,0\nx\n"}}),
            "\"a\", line 2: \"x\" is not an integer");
}

TEST(AbaqusDeck, MissingAndCircularIncludesStop) {
  EXPECT_EQ(StopOfDeck("*INCLUDE, INPUT=a\n"),
            "\"deck.inp\", line 1: the included file \"a\" cannot be read");
  EXPECT_EQ(StopOfDeck("*NODE, INPUT=n\n"),
            "\"deck.inp\", line 1: the included file \"n\" cannot be read");
  EXPECT_EQ(StopOfDeck("*INCLUDE, INPUT=a\n",
                       {{"a", "*INCLUDE, INPUT=b\n"}, {"b", "*HEADING\n*INCLUDE, INPUT=a\n"}}),
            "\"b\", line 2: the included file \"a\" includes itself");
  EXPECT_EQ(StopOfDeck("*INCLUDE\n"), "\"deck.inp\", line 1: no name of a file behind INPUT=");
  // Keywords in a file of data would begin something that nobody expects there.
  EXPECT_EQ(StopOfDeck("*NODE, INPUT=n\n", {{"n", "*NODE\n1,0,0,0\n"}}),
            "\"n\", line 1: a keyword in a file that is to hold data lines alone");
}

// Thirty files of which each includes the next one twice are a thousand million lines.
TEST(AbaqusDeck, IncludesThatMultiplyStop) {
  DeckTexts files;
  for (int k = 0; k < 30; ++k) {
    const std::string next = "*INCLUDE, INPUT=f" + std::to_string(k + 1) + "\n";
    files["f" + std::to_string(k)] = next + next;
  }
  files["f30"] = "*HEADING\n";
  EXPECT_NE(StopOfDeck("*INCLUDE, INPUT=f0\n", files).find("more files than can be meant"),
            std::string::npos);
}

// A file that includes itself by ever new names.
TEST(AbaqusDeck, IncludesWithoutEndStop) {
  DeckTexts files;
  std::string name = "a";
  for (int k = 0; k < 40; ++k) {
    const std::string next = "./" + name;
    files[name] = "*INCLUDE, INPUT=" + next + "\n";
    name = next;
  }
  EXPECT_NE(StopOfDeck("*INCLUDE, INPUT=a\n", files).find("includes itself"), std::string::npos);
}

TEST(AbaqusDeck, ParametersThatAreNotKnownAreTold) {
  const ImportedDeck deck = ImportDeck("*NODE, NSET=A, COLOUR=RED\n1,0,0,0\n");
  EXPECT_EQ(Reasons(deck, Fate::Limited), Texts{"*NODE: its parameter COLOUR is not taken over"});
}

TEST(AbaqusDeck, OfUnknownKeywordsTheNearestIsNamed) {
  const ImportedDeck deck = ImportDeck("*NODE\n1,0,0,0\n*ELASTICS\n1,0\n*CLAOD\n1,1,1.\n");
  EXPECT_EQ(Reasons(deck, Fate::Lost), (Texts{"*ELASTICS: unknown keyword; did you mean ELASTIC?",
                                              "*CLAOD: unknown keyword; did you mean CLOAD?"}));
}

TEST(AbaqusDeck, EveryKeywordIsCountedAndHasAFate) {
  const ImportedDeck deck = ImportDeck(
      "*HEADING\ntitle\n*NODE\n1,0,0,0\n*Node Output\nU\n*NODE OUTPUT\nU\n*EQUATION\n2\n1,1,1.\n"
      "*PLASTIC\n1,0\n*FOO BAR\n1\n*NGEN\n1,2\n");
  EXPECT_EQ(deck.report.cards.at("*NODE OUTPUT").count, 2U);
  EXPECT_EQ(deck.report.cards.at("*NODE OUTPUT").first.line, 5U);
  EXPECT_EQ(deck.report.cards.size(), 7U);
  EXPECT_EQ(Reasons(deck, Fate::NoEffect),
            (Texts{"*HEADING: a title", "*NODE OUTPUT: a request for output (2)"}));
  EXPECT_EQ(Reasons(deck, Fate::Limited), Texts{"*PLASTIC: materials are linear elastic here"});
  EXPECT_EQ(Reasons(deck, Fate::Lost), (Texts{"*EQUATION: couplings of nodes have no counterpart",
                                              "*FOO BAR: unknown keyword"}));
  EXPECT_EQ(Reasons(deck, Fate::Refused),
            Texts{"*NGEN: it generates nodes or elements: have the preprocessor write them out"});
}

}  // namespace
}  // namespace kvx::test
