// Formats told by names and texts.
#include "commands/deck_format.h"

#include <gtest/gtest.h>

#include <string>

namespace kvx::test {
namespace {

// What ChooseFormat says where it cannot decide; "" where it can.
std::string ReasonFor(const std::string& name, std::string_view text) {
  std::string reason;
  const DeckFormat format = ChooseFormat(DeckFormat::Unknown, name, text, reason);
  EXPECT_EQ(format == DeckFormat::Unknown, !reason.empty()) << name;
  return reason;
}

TEST(DeckFormat, IsToldByTheExtension) {
  for (const char* name :
       {"a.bdf", "dir.msh/A.BDF", "a.dat", "a.nas", "a.bulk", "a.blk", "a.pch"}) {
    EXPECT_EQ(FormatOfName(name), DeckFormat::Nastran) << name;
  }
  EXPECT_EQ(FormatOfName("a.b.Msh"), DeckFormat::Gmsh);
  EXPECT_EQ(FormatOfName("a.inp"), DeckFormat::Abaqus);
  for (const char* name : {"a.txt", "msh", ".msh", "a", "a.msh.gz"}) {
    EXPECT_EQ(FormatOfName(name), DeckFormat::Unknown) << name;
  }
}

TEST(DeckFormat, IsToldByTheFirstLineThatSaysSomething) {
  EXPECT_EQ(LookAtDeck("$MeshFormat\n4.1 0 8\n").format, DeckFormat::Gmsh);
  const DeckLook abaqus = LookAtDeck("** a comment\r\n\r\n  *Heading\r\n");
  EXPECT_EQ(abaqus.format, DeckFormat::Abaqus);
  EXPECT_EQ(abaqus.line, 3U);
  EXPECT_EQ(abaqus.begin, "*Heading");
  for (const char* text : {"$ a comment\nSOL 101\n", "$ x\nGRID*   1\n", "grid,1,,0.,0.,0.\n",
                           "BEGIN BULK\n", "\xEF\xBB\xBFGRID           1\n", "TITLE = plate\n",
                           "$\n$MeshFormats\nCQUAD4         1\n"}) {
    EXPECT_EQ(LookAtDeck(text).format, DeckFormat::Nastran) << text;
  }
  for (const char* text : {"", "\n\n", "1 2 3\n", "** only comments\n", "$ only comments\n",
                           "**\n*\n", "/PREP7\nN,1,0,0,0\n"}) {
    EXPECT_EQ(LookAtDeck(text).format, DeckFormat::Unknown) << text;
  }
}

// A title stands in many files; a keyword behind it says more.
TEST(DeckFormat, TitleAloneSaysLess) {
  EXPECT_EQ(LookAtDeck("TITLE of a frame\n*NODE\n1, 0., 0., 0.\n").format, DeckFormat::Abaqus);
}

TEST(DeckFormat, AgreesOrTakesTheOneThatIsKnown) {
  EXPECT_EQ(ReasonFor("a.bdf", "GRID,1\n"), "");
  EXPECT_EQ(ReasonFor("a.txt", "GRID,1\n"), "");
  EXPECT_EQ(ReasonFor("a.inp", "1, 2, 3\n"), "");
  std::string reason;
  EXPECT_EQ(ChooseFormat(DeckFormat::Unknown, "a.txt", "*NODE\n", reason), DeckFormat::Abaqus);
  // What the user says holds.
  EXPECT_EQ(ChooseFormat(DeckFormat::Abaqus, "a.bdf", "GRID,1\n", reason), DeckFormat::Abaqus);
}

TEST(DeckFormat, ContradictionIsTold) {
  EXPECT_EQ(
      ReasonFor("a.msh", "\n*NODE, NSET=all\n"),
      "its name is that of a gmsh mesh, but line 2, \"*NODE\", is of an Abaqus deck. Say which "
      "it is with --format.");
  EXPECT_NE(ReasonFor("a.txt", "x\n").find("--format"), std::string::npos);
}

TEST(DeckFormat, WhatIsNoDeckIsNamed) {
  const auto expect = [](const char* name, std::string_view text, const char* part) {
    EXPECT_NE(ReasonFor(name, text).find(part), std::string::npos) << ReasonFor(name, text);
  };
  expect("a.bdf", "", "it is empty.");
  expect("a.bdf", " \r\n\t\n", "it is empty.");
  expect("a.msh", std::string_view("\x1F\x8B\x08\x00", 4), "gzip");
  expect("a.inp", std::string_view("*\0N\0O\0D\0E\0", 10), "binary");
  expect("a.inp", std::string_view("\xFF\xFE*\0N\0", 6), "UTF-16");
  expect("a.dat", "### Toln_Korvex release=3.0 ###\n", "model file already");
  expect("a.msh", "ISO-10303-21;\n", "STEP");
  // A binary mesh begins with text; what the user says does not help against the others.
  EXPECT_EQ(ReasonFor("a.msh", std::string_view("$MeshFormat\n2.2 1 8\n\1\0\0\0", 24)), "");
  std::string reason;
  EXPECT_EQ(ChooseFormat(DeckFormat::Nastran, "a.bdf", "", reason), DeckFormat::Unknown);
}

}  // namespace
}  // namespace kvx::test
