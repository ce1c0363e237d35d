// The check and the solver's reader agree on any text: where the check has no error, the reader
// takes every row whole, and the tables are the same. And no text breaks the check.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "check/check_text.h"
#include "deck/read_tables.h"
#include "deck/write_tables.h"
#include "mutate_model.h"
#include "report/stop.h"
#include "support/expect_findings.h"
#include "support/planted_text.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

// The findings, with their number.
std::size_t CountErrors(const std::string& text, CheckedModel& model) {
  FindingList findings;
  CheckText(text, model, findings);
  for (const Finding& finding : findings.findings) EXPECT_FALSE(finding.message.empty());
  return CountFindings(findings, Severity::Error);
}

// The tables that fit the lines and states of the model.
void ExpectConsistent(const CheckedModel& model) {
  for (std::size_t k = 1; k < SectionCount; ++k) {
    const auto section = static_cast<korvex::Section>(k);
    EXPECT_EQ(static_cast<std::size_t>(CountRows(model.tables, section)), model.lines[k].size());
    for (const std::int32_t row : model.lostRows[k]) {
      EXPECT_LT(row, CountRows(model.tables, section));
      EXPECT_TRUE(IsDoubtful(model, section, row));
    }
  }
  for (const korvex::Section section : ElementSections) {
    EXPECT_EQ(model.states[KindOf(section)].size(),
              static_cast<std::size_t>(CountRows(model.tables, section)));
  }
}

// Checks the text; if there is no error, reads it with the reader.
bool Agrees(const std::string& text) {
  CheckedModel model;
  const std::size_t errors = CountErrors(text, model);
  ExpectConsistent(model);
  if (errors > 0) return true;
  korvex::ModelTables tables;
  bool isWhole = true;
  korvex::RowListener listener;
  listener.row = [&](const korvex::RowReading& reading) {
    isWhole = isWhole && reading.awaited == nullptr && reading.odd == korvex::OddNumber::None;
  };
  try {
    korvex::ReadTables(text, listener, tables);
  } catch (const korvex::Stop& stop) {
    ADD_FAILURE() << stop.text;
    return false;
  }
  return isWhole && korvex::WriteTables(tables) == korvex::WriteTables(model.tables);
}

std::vector<std::string> ListSeeds() {
  std::vector<std::string> seeds;
  const std::filesystem::path corpus = std::filesystem::path(KORVEX_SOURCE) / "fuzz" / "corpus";
  for (const auto& entry : std::filesystem::directory_iterator(corpus)) {
    seeds.push_back(korvex::test::ReadFile(entry.path()));
  }
  for (std::uint32_t seed = 0; seed < 12; ++seed) {
    seeds.push_back(korvex::test::WriteModel(MakeGoodModel(seed)));
  }
  return seeds;
}

TEST(CheckTextAgreement, HoldsOnMutatedModels) {
  const std::vector<std::string> seeds = ListSeeds();
  ASSERT_GE(seeds.size(), 15U);
  int withoutError = 0;
  for (std::uint64_t k = 0; k < 5000; ++k) {
    std::string text = seeds[k % seeds.size()];
    korvex::fuzz::MutateModel(text, k);
    SCOPED_TRACE("mutation " + std::to_string(k));
    ASSERT_TRUE(Agrees(text));
    CheckedModel model;
    if (CountErrors(text, model) == 0) ++withoutError;
  }
  // Many mutations only change a value: about half of the texts are still read well.
  EXPECT_GT(withoutError, 500);
  EXPECT_LT(withoutError, 4500);
}

TEST(CheckTextAgreement, HoldsWhereTheFileBreaksOff) {
  const std::string good = korvex::test::WriteModel(MakeGoodModel(4));
  for (std::size_t size = 0; size < good.size(); size += 37) {
    SCOPED_TRACE("size " + std::to_string(size));
    ASSERT_TRUE(Agrees(good.substr(0, size)));
  }
}

TEST(CheckTextAgreement, HoldsOnHostileTexts) {
  const std::string good = korvex::test::WriteModel(MakeGoodModel(2));
  std::string windows, old, wide = "\xFF\xFE";
  for (const char c : good) {
    windows += c == '\n' ? "\r\n" : std::string(1, c);
    old += c == '\n' ? '\r' : c;
    wide += c;
    wide += '\0';
  }
  const std::string header = "### Toln_Korvex release=3.0 ###\n";
  const std::string million(1000000, ',');
  std::string commaLines, titles;
  for (int k = 0; k < 200000; ++k) commaLines += ",\n";
  for (int k = 0; k < 20000; ++k) titles += "Number of forces:NFOR=2\nNumber of materials:NMT=1\n";
  const std::vector<std::string> texts{"",
                                       "#",
                                       std::string(1, '\0'),
                                       std::string(1000000, '\n'),
                                       million,
                                       commaLines,
                                       header + commaLines,
                                       std::string(10000000, '7'),
                                       header + std::string(10000000, 'x'),
                                       std::string(1000, '\0') + good,
                                       old,
                                       wide,
                                       "\xEF\xBB\xBF" + good,
                                       titles,
                                       header + titles,
                                       good + titles,
                                       "Dear Sir or Madam,\n\nthe deck follows.\n"};
  for (std::size_t k = 0; k < texts.size(); ++k) {
    SCOPED_TRACE("text " + std::to_string(k));
    EXPECT_TRUE(Agrees(texts[k]));
    CheckedModel model;
    EXPECT_GT(CountErrors(texts[k], model), 0U);
  }
  // These the reader takes well: Windows line ends, and whatever stands behind the last row.
  for (const std::string& text : {windows, good + commaLines, good + std::string(100000, '\0')}) {
    CheckedModel model;
    EXPECT_EQ(CountErrors(text, model), 0U);
    EXPECT_TRUE(Agrees(text));
  }
}

TEST(CheckTextAgreement, HoldsWithHostileCounts) {
  for (const std::string& key : AllKeys) {
    for (const std::string count : {"2000000000", "-5", "99999999999999999999", "-2147483648",
                                    "2147483647", "4294967297", "100000", "1e3", "", "nan"}) {
      TextDeck deck = SplitDeck(korvex::test::WriteModel(MakeGoodModel(3)));
      SetCount(deck, key, count);
      SCOPED_TRACE(key + "=" + count);
      CheckedModel model;
      const std::size_t errors = CountErrors(JoinDeck(deck), model);
      EXPECT_GE(errors, 1U);
      EXPECT_TRUE(Agrees(JoinDeck(deck)));
    }
  }
}

// What stands behind a number on the line before a label would be taken for the label, and the
// reader would go on without a slip.
TEST(CheckTextAgreement, HoldsWhereANumberRunsIntoALabel) {
  int count = 0;
  for (std::uint32_t seed = 0; seed < 60; ++seed) {
    for (const std::string key : {"NTBS", "NLBS", "NCBS"}) {
      TextDeck deck = SplitDeck(korvex::test::WriteModel(MakeGoodModel(seed)));
      if (CountOf(deck, key) == 0) continue;
      SCOPED_TRACE(key + ", seed " + std::to_string(seed));
      const std::size_t title = FindTitle(deck, key);
      deck.lines[title] += ".5";
      deck.lines.erase(deck.lines.begin() + static_cast<std::ptrdiff_t>(title) + 1);
      CheckedModel model;
      EXPECT_GE(CountErrors(JoinDeck(deck), model), 1U);
      ++count;
    }
  }
  EXPECT_GE(count, 30);
}

// A hundred thousand rows that cannot be read take no longer than rows that can: the time follows
// the size. The bound is some fifty times what it takes here, for slow machines and sanitizers.
TEST(CheckTextAgreement, TakesTimeInStepWithTheSize) {
  std::string rows;
  for (int k = 0; k < 100000; ++k) rows += std::to_string(k) + ":1;2;3\n";
  const std::string good = korvex::test::WriteModel(MakeGoodModel(1));
  const std::size_t at = good.find("0:", good.find("NPOIN="));
  const auto begin = std::chrono::steady_clock::now();
  CheckedModel model;
  EXPECT_GT(CountErrors(good.substr(0, at) + rows + good.substr(at), model), 90000U);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  EXPECT_LT(time.count(), 30.0);
}

}  // namespace
}  // namespace kvx::test
