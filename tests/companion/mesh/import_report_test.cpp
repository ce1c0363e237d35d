#include "mesh/import_report.h"

#include <gtest/gtest.h>

#include "report/stop.h"

namespace kvx::test {
namespace {

TEST(ImportReport, CardsOfOneReasonAreOneEntry) {
  ImportReport report;
  report.files = {"deck.bdf"};
  CountCard("RBE2", {0, 7}, report);
  CountCard("RBE2", {0, 9}, report);
  ReportCard("RBE2", Fate::Lost, "rigid elements have no counterpart", {0, 7}, "RBE2 1", report);
  ReportCard("RBE2", Fate::Lost, "rigid elements have no counterpart", {0, 9}, "RBE2 2", report);
  ReportCard("RBE2", Fate::Limited, "rigid elements have no counterpart", {0, 9}, "", report);
  ASSERT_EQ(report.entries.size(), 2U);
  EXPECT_EQ(report.entries[0].count, 2U);
  EXPECT_EQ(report.entries[0].first.line, 7U);
  EXPECT_EQ(report.entries[0].example, "RBE2 1");
  EXPECT_EQ(report.cards.at("RBE2").count, 2U);
  EXPECT_EQ(report.cards.at("RBE2").first.line, 7U);
  EXPECT_EQ(CountFate(report, Fate::Lost), 2U);
  EXPECT_EQ(CountFate(report, Fate::Refused), 0U);
}

TEST(ImportReport, PlacesNameTheFileWhereThereAreSeveral) {
  ImportReport report;
  report.files = {"deck.bdf"};
  EXPECT_EQ(PlaceText(report, {0, 12}), "line 12");
  report.files.push_back("part.inc");
  EXPECT_EQ(PlaceText(report, {1, 3}), "part.inc, line 3");
  EXPECT_EQ(PlaceText(report, {1, 0}), "part.inc");
  try {
    StopImport(report, {1, 3}, "no number");
    FAIL();
  } catch (const korvex::Stop& stop) {
    EXPECT_EQ(stop.text, "\"part.inc\", line 3: no number");
  }
}

}  // namespace
}  // namespace kvx::test
