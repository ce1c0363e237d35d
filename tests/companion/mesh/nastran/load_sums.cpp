#include "mesh/nastran/load_sums.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "mesh/nastran/nastran_loads.h"
#include "mesh/nastran/nastran_structure.h"
#include "mesh/nastran/read_deck.h"

namespace kvx::test {

namespace {

// The sums are of a few dozen terms with 16 digits.
constexpr double RoundingOfSums = 1e-9;

}  // namespace

ImportedDeck ImportDeckText(const std::string& text) {
  ImportedDeck imported;
  DeckOfText read;
  ReadDeckText(text, read);
  NastranNumbers numbers;
  NastranSystems systems;
  TakeNastranStructure(read.deck, imported.model, numbers, systems, read.report);
  TakeNastranLoads(read.deck, numbers, systems, imported.model, read.report);
  imported.report = read.report;
  return imported;
}

std::string ImportStopText(const std::string& text) {
  return StopText([&text] { ImportDeckText(text); });
}

void ExpectSums(const ImportedDeck& deck, std::size_t caseRow, const LoadSums& expected) {
  ASSERT_LT(caseRow, deck.model.cases.size());
  const LoadSums sums = SumLoads(deck.model, deck.model.cases[caseRow]);
  double largest = 0.0;
  for (const double each : expected) largest = std::max(largest, std::fabs(each));
  for (std::size_t k = 0; k < 6; ++k) {
    EXPECT_NEAR(sums[k], expected[k], RoundingOfSums * largest)
        << "case " << caseRow << ", sum " << k;
  }
}

std::string EntriesText(const ImportReport& report, Fate fate, const std::string& begin) {
  std::string text;
  for (const ReportEntry& entry : report.entries) {
    if (entry.fate != fate || entry.card.rfind(begin, 0) != 0) continue;
    text += entry.card + '|' + entry.reason + '|' + std::to_string(entry.count) + '\n';
  }
  return text;
}

std::string RestraintsText(const ImportModel& model, const ImportCase& loads) {
  std::map<std::int64_t, std::string> rows;
  if (loads.supports < 0) return "no supports";
  const SupportSet& set = model.supports.at(static_cast<std::size_t>(loads.supports));
  for (const korvex::NodalRestraint& row : set.restraints) {
    std::string& text = rows[model.nodeNumbers[static_cast<std::size_t>(row.node)]];
    for (const std::int32_t fixed : row.fixed) text += ' ' + std::to_string(fixed);
  }
  std::string all;
  for (const auto& [number, text] : rows) all += std::to_string(number) + ':' + text + '\n';
  return all;
}

}  // namespace kvx::test
