// Decks that are cut off, at each of their bytes: a cut is told of, or leaves the whole model. What
// a cut takes away at the end of a line cannot be seen in the line, so each kind of deck has to end
// with its last word.
#include <gtest/gtest.h>

#include <string>

#include "mesh/abaqus/import_abaqus.h"
#include "mesh/check_complete.h"
#include "mesh/nastran/import_nastran.h"
#include "mesh/sum_loads.h"
#include "report/stop.h"

namespace kvx::test {
namespace {

using Importer = void (*)(const SourceFile&, const IncludeReader&, ImportModel&, ImportReport&);

struct CutDeck {
  ImportedDeck deck;
  bool isTold = false;  // stopped, or anything is refused, lost or limited
};

CutDeck Import(Importer import, const std::string& text, const std::string& included = "") {
  CutDeck cut;
  const auto include = [&included](const std::string&, std::string& content) {
    content = included;
    return true;
  };
  const SourceFile file{"deck", text};
  try {
    import(file, include, cut.deck.model, cut.deck.report);
    CheckComplete(cut.deck.model, cut.deck.report);
  } catch (const korvex::Stop&) {
    cut.isTold = true;
  }
  for (const ReportEntry& entry : cut.deck.report.entries) {
    cut.isTold = cut.isTold || entry.fate != Fate::NoEffect;
  }
  return cut;
}

// How often a reason is given.
std::size_t Count(const CutDeck& cut, const std::string& reason) {
  std::size_t count = 0;
  for (const ReportEntry& entry : cut.deck.report.entries) {
    if (entry.reason == reason && entry.fate == Fate::Limited) count += entry.count;
  }
  return count;
}

constexpr const char* OpenEnd = "the last line has no end; it may be cut off";
constexpr const char* NoEnddata = "the deck ends without ENDDATA; it may be cut off";
constexpr const char* NoEndStep = "there is no *END STEP; the deck may be cut off";
constexpr const char* NoStep = "the deck ends without a *STEP; it may be cut off";

// A square plate of 10 x 10, a pressure of 0.05 against its normal, and 1000 along z at a corner.
const std::string Control = "SOL 101\nCEND\nTITLE = PLATE\nSPC = 1\nLOAD = 2\n";
const std::string Cards =
    "GRID,1,,0.,0.,0.\nGRID,2,,10.,0.,0.\nGRID    3               10.     10.     0.\r\n"
    "GRID*                  4                              0.             10.\n*\n"
    "CQUAD4,1,7,1,2,3,4\nPSHELL,7,9,2.5,9,,9\nMAT1,9,200000.,,0.3\n$ held at two nodes\n"
    "SPC1,1,123456,1,2\nPLOAD4,2,1,-.05\nFORCE,2,3,,1000.,0.,0.,1.0\n";
const std::string NastranDeckText = Control + "BEGIN BULK\n" + Cards + "ENDDATA\n";

const std::string AbaqusMeshText =
    "*NODE\n1,0,0,0\n2,10.,0,0\n3,10.,10.,0\n4,0,10.,0\n"
    "*ELEMENT, TYPE=S4, ELSET=PLATE\n1,1,2,3,4\n";
const std::string AbaqusDeckText =
    AbaqusMeshText +
    "*MATERIAL, NAME=M\n*ELASTIC\n200000.,0.3\n"
    "*SHELL SECTION, ELSET=PLATE, MATERIAL=M\n2.5\n*BOUNDARY\n1,1,6\n2,1,6\n"
    "*STEP,\nNAME=LIVE\n*STATIC\n** the loads\n*DLOAD\nPLATE,P,-.05\n*CLOAD\n3,3,1000.\r\n"
    "*END STEP\n";

// Both decks: -0.05 x 10 x 10 + 1000 along z.
constexpr double Total = 995.0;

// end: how many bytes the deck has up to its last word.
void CutEverywhere(Importer import, const std::string& text, std::size_t end) {
  for (std::size_t size = 0; size <= text.size(); ++size) {
    const CutDeck cut = Import(import, text.substr(0, size));
    EXPECT_EQ(cut.isTold, size < end) << "cut behind:\n" << text.substr(0, size);
    if (cut.isTold) continue;
    ASSERT_EQ(cut.deck.model.cases.size(), 1U);
    EXPECT_EQ(cut.deck.model.supports.size(), 1U);
    // Three midpoints of two triangles, exact but for the last bits.
    EXPECT_NEAR(SumLoads(cut.deck.model, cut.deck.model.cases[0])[2], Total, 1e-12 * Total);
  }
}

TEST(CutDecks, EachCutOfANastranDeckIsToldOf) {
  CutEverywhere(ImportNastran, NastranDeckText, NastranDeckText.size() - 1);
}

TEST(CutDecks, EachCutOfAnAbaqusDeckIsToldOf) {
  CutEverywhere(ImportAbaqus, AbaqusDeckText, AbaqusDeckText.size() - 1);
}

TEST(CutDecks, ANastranDeckThatCanBeRunEndsWithEnddata) {
  const CutDeck cut = Import(ImportNastran, Control + "BEGIN BULK\n" + Cards);
  EXPECT_EQ(Count(cut, NoEnddata), 1U);
  EXPECT_EQ(Count(cut, OpenEnd), 0U);
  // Case control without executive control.
  EXPECT_EQ(Count(Import(ImportNastran, "BEGIN BULK\n" + Cards), NoEnddata), 1U);
  // Bulk data alone, as programs write it to be included.
  EXPECT_EQ(Count(Import(ImportNastran, Cards), NoEnddata), 0U);
  // ENDDATA may stand in an included file.
  const std::string including = Control + "BEGIN BULK\nINCLUDE 'bulk'\n";
  EXPECT_EQ(Count(Import(ImportNastran, including, Cards + "ENDDATA\n"), NoEnddata), 0U);
  EXPECT_EQ(Count(Import(ImportNastran, including, Cards), NoEnddata), 1U);
}

TEST(CutDecks, ALastLineWithoutAnEndIsToldOf) {
  EXPECT_EQ(Count(Import(ImportNastran, Cards.substr(0, Cards.size() - 2)), OpenEnd), 1U);
  EXPECT_EQ(Count(Import(ImportNastran, Cards + "$ a remark"), OpenEnd), 0U);
  EXPECT_EQ(Count(Import(ImportNastran, Cards + "enddata"), OpenEnd), 0U);
  const std::string mesh = AbaqusMeshText.substr(0, AbaqusMeshText.size() - 1);
  EXPECT_EQ(Count(Import(ImportAbaqus, mesh), OpenEnd), 1U);
  EXPECT_EQ(Count(Import(ImportAbaqus, mesh + "\n** a remark"), OpenEnd), 0U);
  EXPECT_EQ(Count(Import(ImportAbaqus, AbaqusMeshText + "  "), OpenEnd), 0U);
  // Of included files, too.
  EXPECT_EQ(Count(Import(ImportNastran, "INCLUDE 'bulk'\n", "GRID,1,,0.,0.,0"), OpenEnd), 1U);
  EXPECT_EQ(Count(Import(ImportAbaqus, "*INCLUDE, INPUT=mesh\n", mesh), OpenEnd), 1U);
}

TEST(CutDecks, EachStepHasItsEnd) {
  const std::string step = "*STEP\n*STATIC\n*CLOAD\n3,3,1.\n";
  EXPECT_EQ(Count(Import(ImportAbaqus, AbaqusMeshText + step), NoEndStep), 1U);
  EXPECT_EQ(Count(Import(ImportAbaqus, AbaqusMeshText + step + step + "*END STEP\n"), NoEndStep),
            1U);
  EXPECT_EQ(Count(Import(ImportAbaqus, AbaqusMeshText + step + "*ENDSTEP\n"), NoEndStep), 0U);
}

TEST(CutDecks, MoreThanAMeshHasAStep) {
  EXPECT_EQ(Count(Import(ImportAbaqus, AbaqusMeshText), NoStep), 0U);
  EXPECT_EQ(Count(Import(ImportAbaqus, AbaqusMeshText + "*BOUNDARY\n1,1,6\n"), NoStep), 1U);
  const std::size_t toSteps = AbaqusDeckText.find("*STEP");
  EXPECT_EQ(Count(Import(ImportAbaqus, AbaqusDeckText.substr(0, toSteps)), NoStep), 1U);
}

}  // namespace
}  // namespace kvx::test
