// A file of loads is checked as the same loads in a whole model file are.
#include "commands/check_loads_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "deck/read_tables.h"
#include "deck/write_tables.h"
#include "support/good_models.h"
#include "support/planted_text.h"

namespace kvx::test {
namespace {

using korvex::test::WriteModel;

bool IsOfLoads(const Finding& finding) {
  const std::string table = finding.table;
  return table == "NFOR" || table == "NDL_S_4ND" || table == "NDL_S_3ND" || table == "NDL_B";
}

// "K401 line 12 NFOR: message", one a line.
std::string List(const std::vector<Finding>& findings) {
  std::string list;
  for (const Finding& f : findings) {
    list += f.code + " line " + std::to_string(f.line) + ' ' + f.table + ": " + f.message + '\n';
  }
  return list;
}

std::string CheckWhole(const std::string& text) {
  CheckReport report;
  CheckModel(text, {}, report);
  std::vector<Finding>& all = report.findings.findings;
  all.erase(std::remove_if(all.begin(), all.end(), [](const Finding& f) { return !IsOfLoads(f); }),
            all.end());
  return List(all);
}

// The findings of a file of loads beside the structure of another file.
std::string CheckApart(const std::string& structure, const std::string& loads) {
  CheckReport report;
  CheckModel(structure, {}, report);
  const std::string before = korvex::WriteTables(report.model.tables);
  FindingList findings;
  std::string isolated;
  CheckLoadsFile(loads, report, findings, isolated);
  EXPECT_EQ(korvex::WriteTables(report.model.tables), before);
  return List(findings.findings);
}

// Mistakes in loads, of the text and of the numbers.
std::string Plant(int kind, const std::string& text, Dice& dice) {
  TextDeck deck = SplitDeck(text);
  const std::string key = AnySection(deck, {"NFOR", "NDL_S_4ND", "NDL_S_3ND", "NDL_B"}, 1, dice);
  if (key.empty()) return text;
  const int count = CountOf(deck, key);
  std::string& row = deck.lines[RowLine(deck, key, RollInteger(dice, 0, count - 1))];
  const std::size_t digits = row.find_first_not_of("0123456789");
  switch (kind) {
    case 0:
      row.replace(0, digits, "987654321");  // K401
      break;
    case 1:
      row = row.substr(0, digits) + (key == "NFOR"    ? "<0,0,0,0,0,0>"  // K404
                                     : key == "NDL_B" ? ":0,0"
                                                      : ":0,0,0");
      break;
    case 2:
      row[digits] = ';';  // K0xx
      break;
    case 3:
      row.insert(digits + 1, "1e50+");  // K0xx
      break;
    case 4:
      SetCount(deck, key, std::to_string(count + 1));  // K0xx
      break;
    case 5:
      deck.lines.insert(deck.lines.begin() + static_cast<std::ptrdiff_t>(FindTitle(deck, key)),
                        "# my loads");  // K0xx
      break;
    default:
      row.replace(digits + 1, row.find(',') - digits - 1, "nan");  // K122
  }
  return JoinDeck(deck);
}

TEST(CheckLoadsFile, FindsWhatTheCheckOfAWholeModelFinds) {
  int named = 0;
  for (std::uint32_t seed = 0; seed < 35; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice = MakeDice(seed);
    const std::string structure = WriteModel(MakeGoodModel(seed));
    const std::string planted = Plant(static_cast<int>(seed % 7), structure, dice);
    const std::string whole = CheckWhole(planted);
    EXPECT_EQ(CheckApart(structure, planted), whole);
    named += whole.empty() ? 0 : 1;
  }
  EXPECT_GT(named, 25);  // a model has no loads of some kind; hints are counted
}

// The sections alone begin at line 1.
TEST(CheckLoadsFile, CountsLinesInItsOwnFile) {
  const std::string structure = WriteModel(MakeGoodModel(2));
  const std::string tail =
      "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=0\n"
      "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0\n"
      "Number of distributed loads on beam elements:NDL_B=0\n";
  EXPECT_EQ(CheckApart(structure, "Number of forces:NFOR=1\n999999<1,0,0,0,0,0>\n" + tail)
                .rfind("K401 line 2 NFOR: force row 0: node 999999 does not exist", 0),
            0U);
  const std::string doubled = "3<1,0,0,0,0,0>\n";
  const std::string twice =
      CheckApart(structure, "\nNumber of forces:NFOR=2\n" + doubled + doubled + tail);
  EXPECT_NE(twice.find("K403 line 4 NFOR: "), std::string::npos) << twice;
  EXPECT_NE(twice.find("the same row stands at line 3;"), std::string::npos) << twice;
  const std::string none = CheckApart(structure, "Number of forces:NFOR=0\n" + tail);
  EXPECT_EQ(none.rfind("K407 line 1 NFOR: ", 0), 0U) << none;
  // A section twice: the message names the line of the second.
  const std::string sections =
      CheckApart(structure, "Number of forces:NFOR=0\nNumber of forces:NFOR=1\n" + doubled + tail);
  EXPECT_EQ(sections.rfind("K004 line 1 NFOR: count NFOR: it stands in line 2, too.", 0), 0U)
      << sections;
}

}  // namespace
}  // namespace kvx::test
