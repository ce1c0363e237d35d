// The lists of what became of a deck's cards.
#include <gtest/gtest.h>

#include <string>

#include "commands/import_outcome.h"

namespace kvx::test {
namespace {

// A deck of bulk data with one card of each fate.
ImportReport SomeReport() {
  ImportReport report;
  report.files = {"bridge.bdf"};
  for (std::size_t k = 0; k < 12; ++k) CountCard("GRID", {0, 20 + k}, report);
  CountCard("PSHELL", {0, 11}, report);
  CountCard("PSHELL", {0, 12}, report);
  CountCard("RBE2", {0, 40}, report);
  CountCard("RBE2", {0, 41}, report);
  CountCard("PARAM", {0, 3}, report);
  ReportCard("PARAM", Fate::NoEffect, "POST steers output", {0, 3}, "PARAM POST", report);
  ReportCard("PSHELL", Fate::Limited, "MID3 is blank", {0, 12}, "PSHELL 2", report);
  ReportCard("RBE2", Fate::Lost, "rigid elements have no counterpart", {0, 40}, "RBE2 17", report);
  ReportCard("RBE2", Fate::Lost, "rigid elements have no counterpart", {0, 41}, "RBE2 18", report);
  return report;
}

TEST(ImportReportText, ListsEachCardOnceAndWhatBecameOfIt) {
  EXPECT_EQ(ImportReportText(SomeReport(), {}),
            "\n"
            "Taken:\n"
            "  PSHELL   2  line 11  not all as they stand: see below\n"
            "  GRID    12  line 20\n"
            "\n"
            "Taken with a limit, results may differ by it:\n"
            "  PSHELL  1  line 12  MID3 is blank (PSHELL 2)\n"
            "\n"
            "Lost, the structure or its loads lack it:\n"
            "  RBE2  2  line 40  rigid elements have no counterpart (the first: RBE2 17)\n"
            "\n"
            "Without effect on a linear static analysis:\n"
            "  PARAM  1  line 3  POST steers output (PARAM POST)\n");
}

// A card of which some are lost was taken but for these.
TEST(ImportReportText, CardThatIsLostInPartIsAmongTheTaken) {
  ImportReport report = SomeReport();
  CountCard("RBE2", {0, 50}, report);
  const std::string text = ImportReportText(report, {});
  EXPECT_NE(text.find("  RBE2     3  line 40  not all as they stand: see below\n"),
            std::string::npos)
      << text;
}

// The deck is named in the line above the lists.
TEST(ImportReportText, IncludedFilesAreNamed) {
  ImportReport report = SomeReport();
  report.files.emplace_back("parts.inc");
  CountCard("CBAR", {1, 4}, report);
  const std::string text = ImportReportText(report, {});
  EXPECT_NE(text.find("  CBAR     1  parts.inc, line 4\n"), std::string::npos) << text;
  EXPECT_NE(text.find("  GRID    12  line 20\n"), std::string::npos) << text;
}

// No line is longer than the terminal is wide, as far as words allow.
TEST(ImportReportText, RemarksKeepToTheWidth) {
  ImportReport report = SomeReport();
  const std::string card = "physical surface 3 \"a long name of a group of elements\"";
  ReportCard(card, Fate::Refused, "there is no thickness; a map file gives it", {}, "", report);
  TextStyle style;
  style.width = 50;
  const std::string text = ImportReportText(report, style);
  EXPECT_NE(text.find("  " + card + "  1\n      there is no thickness; a map file gives it\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("  RBE2  2  line 40  rigid elements have no\n"
                      "                    counterpart (the first: RBE2\n"
                      "                    17)\n"),
            std::string::npos)
      << text;
}

// What holds the structure together, then its other parts, loads, what may be any of them, masses.
TEST(ImportReportText, GravestLossesStandFirst) {
  ImportReport report;
  report.files = {"bridge.bdf"};
  const auto lose = [&](const char* card, const char* reason) {
    ReportCard(card, Fate::Lost, reason, {}, "", report);
  };
  lose("CONM2", "mass elements are left out; they carry weight alone");
  lose("RBE9", "unknown card");
  lose("*DLOAD", "a load of another type");
  lose("CHEXA", "solid elements have no counterpart");
  lose("case control MPC", "equations have no counterpart");
  lose("*TIE", "it has no counterpart");
  EXPECT_EQ(ImportReportText(report, {}),
            "\n"
            "Lost, the structure or its loads lack it:\n"
            "  case control MPC  1    equations have no counterpart\n"
            "  *TIE              1    it has no counterpart\n"
            "  CHEXA             1    solid elements have no counterpart\n"
            "  *DLOAD            1    a load of another type\n"
            "  RBE9              1    unknown card\n"
            "  CONM2             1    mass elements are left out; they carry weight alone\n");
  EXPECT_EQ(
      LossText(report, {}),
      "Lost: 6 cards of 6 kinds (case control MPC, *TIE, CHEXA, *DLOAD, RBE9, ...), which the "
      "model lacks.\nSee above.\n");
}

// Of the report above: two RBE2 are lost, a PSHELL is limited. In bold yellow, as warnings are.
TEST(ImportReportText, LossesAreCountedInTheEnd) {
  const std::string text =
      "Lost: 2 cards of 1 kind (RBE2), which the model lacks; taken with a limit: 1 card. See "
      "above.";
  EXPECT_EQ(LossText(SomeReport(), {}), text + '\n');
  TextStyle style;
  style.color = true;
  EXPECT_EQ(LossText(SomeReport(), style), "\x1B[1;33m" + text + "\x1B[0m\n");
  ImportReport limited;
  ReportCard("PSHELL", Fate::Limited, "MID3 is blank", {}, "", limited);
  EXPECT_EQ(LossText(limited, {}), "Taken with a limit: 1 card. See above.\n");
  EXPECT_EQ(LossText({}, {}), "");
}

// The model is whole, where the machine alone is too small for it.
TEST(ImportReportText, ModelTooBigForTheMemoryIsNoMistakeOfTheDeck) {
  ImportOutcome outcome;
  outcome.end = ImportEnd::Written;
  outcome.folder = "hull";
  Finding finding;
  finding.code = "K502";
  finding.severity = Severity::Error;
  AddFinding(finding, outcome.check.findings);
  const std::string big = ImportText(outcome, {});
  EXPECT_NE(big.find("too big for the memory of this machine"), std::string::npos) << big;
  EXPECT_EQ(big.find("Mend the deck"), std::string::npos) << big;
  finding.code = "K301";
  AddFinding(finding, outcome.check.findings);
  EXPECT_NE(ImportText(outcome, {}).find("Mend the deck"), std::string::npos);
}

// A name that cannot be typed from what the terminal shows.
TEST(ImportReportText, FolderThatCannotBeShownIsDir) {
  ImportOutcome outcome;
  outcome.end = ImportEnd::Written;
  outcome.folder = "a\nb";
  const std::string text = ImportText(outcome, {});
  EXPECT_NE(
      text.find("Next: kvx run DIR solves it, kvx view DIR --model shows the model. DIR stands "
                "for the folder of the\nmodel.\n"),
      std::string::npos)
      << text;
}

// Bytes of a deck reach no terminal as they are.
TEST(ImportReportText, BytesOfTheDeckAreMadeSafe) {
  ImportReport report;
  CountCard("GR\x1B[31m", {0, 1}, report);
  ReportCard("GR\x1B[31m", Fate::Lost, "unknown card", {0, 1}, "\x07", report);
  const std::string text = ImportReportText(report, {});
  EXPECT_EQ(text.find('\x1B'), std::string::npos);
  EXPECT_EQ(text.find('\x07'), std::string::npos);
  EXPECT_NE(text.find("GR\\x1B[31m"), std::string::npos) << text;
}

TEST(ImportReportText, NothingReadSaysNothing) { EXPECT_EQ(ImportReportText({}, {}), ""); }

}  // namespace
}  // namespace kvx::test
