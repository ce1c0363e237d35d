// The comparison of computed text with the document: which differences it accepts and which it
// reports.
#include "verification/book.h"

#include <gtest/gtest.h>

#include <cmath>

namespace korvex::book {
namespace {

bool Agrees(const std::string& text, const std::string& committed) {
  return FindDifferences(text, committed).empty();
}

TEST(Book, RendersFigures) {
  EXPECT_EQ(Render("a " + Figure(0.0012507) + " b"), "a 1.251e-3 b");
  EXPECT_EQ(Render(Figure(1333.3)), "1333");
  EXPECT_EQ(Render(Figure(-0.30238)), "-0.3024");
  EXPECT_EQ(Render(Figure(1.453e-4, 2)), "1.5e-4");
  EXPECT_EQ(Render(Ratio(0.99996)), "1.0000");
  EXPECT_EQ(Render(RoundingFigure(-3.2e-13, 1e-9)), "3e-13");
  EXPECT_EQ(Render(RoundingFigure(0.0, 1e-9)), "0");
}

TEST(Book, HoldsFiguresToTheirLastDigit) {
  EXPECT_TRUE(Agrees("w " + Figure(0.123449), "w 0.1234"));
  EXPECT_FALSE(Agrees("w " + Figure(0.123449), "w 0.1235"));
  EXPECT_FALSE(Agrees("w " + Figure(0.123451), "w 0.1234"));
  EXPECT_TRUE(Agrees("w " + Figure(0.123451), "w 0.1235"));
  EXPECT_FALSE(Agrees(Figure(0.1234), "-0.1234"));
  EXPECT_TRUE(Agrees(Ratio(0.99996), "1.0000"));
  EXPECT_FALSE(Agrees(Ratio(0.99996), "0.9999"));
  EXPECT_FALSE(Agrees(Ratio(0.99996), "1.0001"));
  EXPECT_FALSE(Agrees(Figure(1.2507e-3), "1.251e-4"));
  EXPECT_FALSE(Agrees(Figure(std::nan("")), "nan"));
}

TEST(Book, WantsFiguresAsTheyArePrinted) {
  EXPECT_FALSE(Agrees(Figure(0.12), "0.12"));
  EXPECT_FALSE(Agrees(Figure(0.12), "0.12000"));
  EXPECT_FALSE(Agrees(Figure(0.0012), "0.001200"));
  EXPECT_FALSE(Agrees(Figure(0.12), ""));
  EXPECT_FALSE(Agrees(Figure(0.12), "?"));
}

TEST(Book, HoldsWordsToTheLetter) {
  const std::string text = "a " + Ratio(0.5) + " b\nc\n";
  EXPECT_TRUE(Agrees(text, "a 0.5000 b\nc\n"));
  EXPECT_FALSE(Agrees(text, "a 0.5000 B\nc\n"));
  EXPECT_FALSE(Agrees(text, "a 0.5000 b\n"));
  EXPECT_FALSE(Agrees(text, "a 0.5000 b\nc\nd\n"));
  EXPECT_FALSE(Agrees(text, "a 0.5000 b more\nc\n"));
  EXPECT_FALSE(Agrees(text, ""));
}

TEST(Book, ReadsAFigureAtTheEndOfASentence) {
  EXPECT_TRUE(Agrees("below " + Figure(1e-7, 1) + ".", "below 1e-7."));
  EXPECT_TRUE(Agrees("w " + Figure(1333.3) + ".", "w 1333."));
  EXPECT_FALSE(Agrees("w " + Figure(1333.3) + ".", "w 1333"));
  EXPECT_FALSE(Agrees("w " + Figure(1333.3), "w 1333."));
  EXPECT_FALSE(Agrees("w " + Figure(1333.3) + ".", "w 1334."));
}

TEST(Book, AcceptsAnyNumberForASkippedFigure) {
  EXPECT_TRUE(Agrees("| " + SkippedFigure() + " |", "| 1.234e-5 |"));
  EXPECT_FALSE(Agrees("| " + SkippedFigure() + " |", "| |"));
  EXPECT_FALSE(Agrees("| " + SkippedFigure() + " |", "| ? |"));
}

TEST(Book, BoundsRounding) {
  EXPECT_TRUE(Agrees(RoundingFigure(2e-11, 1e-9), "7e-10"));
  EXPECT_FALSE(Agrees(RoundingFigure(2e-9, 1e-9), "7e-10"));
  EXPECT_FALSE(Agrees(RoundingFigure(2e-11, 1e-9), "7e-9"));
}

TEST(Book, SplitsSections) {
  const std::vector<Section> sections = SplitSections("intro\n## A\nx\n### deeper\n## B\ny\n");
  ASSERT_EQ(sections.size(), 3U);
  EXPECT_EQ(sections[0].body, "intro\n");
  EXPECT_EQ(sections[1].heading, "A");
  EXPECT_EQ(sections[1].body, "## A\nx\n### deeper\n");
  EXPECT_EQ(sections[2].body, "## B\ny\n");
}

TEST(Book, FormatsTables) {
  EXPECT_EQ(FormatTable({{"", "a"}, {"b", "c"}}), "| | a |\n|---|---|\n| b | c |");
}

}  // namespace
}  // namespace korvex::book
