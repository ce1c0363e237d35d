#include "mesh/nastran/nastran_load_input.h"

#include <algorithm>

#include "mesh/letter_case.h"

namespace kvx {

namespace {

// 40 million supports and loads take about 2 GB, which is what ten cases of a million loaded
// elements need; what asks for more is a deck gone wrong.
constexpr std::size_t MostRows = 40'000'000;

void SortRows(std::vector<NumberedRow>& rows) {
  std::stable_sort(rows.begin(), rows.end(),
                   [](const NumberedRow& a, const NumberedRow& b) { return a.number < b.number; });
}

// The global system, which stands on no card.
const NastranSystem GlobalSystem;

void ReadScalarPoints(NastranLoadInput& in) {
  auto& points = in.scalarPoints;
  for (const NastranCard& card : in.deck.cards) {
    if (card.name != "SPOINT") continue;
    const CardNumbers list = ReadNumberList(card, 0, in);
    for (const std::int64_t number : list.singles) points.emplace_back(number, number);
    points.insert(points.end(), list.ranges.begin(), list.ranges.end());
  }
  std::sort(points.begin(), points.end());
  std::size_t kept = 0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (points[i].first <= points[kept].second) {
      points[kept].second = std::max(points[kept].second, points[i].second);
    } else {
      points[++kept] = points[i];
    }
  }
  if (!points.empty()) points.resize(kept + 1);
}

bool IsScalarPoint(std::int64_t number, const NastranLoadInput& in) {
  const auto at =
      std::partition_point(in.scalarPoints.begin(), in.scalarPoints.end(),
                           [number](const auto& range) { return range.second < number; });
  return at != in.scalarPoints.end() && at->first <= number;
}

}  // namespace

NastranLoadInput MakeNastranLoadInput(const NastranDeck& deck, const NastranNumbers& numbers,
                                      const NastranSystems& systems, const ImportModel& model,
                                      ImportReport& report) {
  NastranLoadInput in{deck, numbers, systems, model, report, {}, {}, {}, MostRows};
  in.nodes.reserve(model.nodeNumbers.size());
  for (std::size_t i = 0; i < model.nodeNumbers.size(); ++i) {
    in.nodes.push_back({model.nodeNumbers[i], static_cast<std::int32_t>(i)});
  }
  in.shells.reserve(model.shells.size());
  for (std::size_t i = 0; i < model.shells.size(); ++i) {
    in.shells.push_back({model.shells[i].number, static_cast<std::int32_t>(i)});
  }
  SortRows(in.nodes);
  SortRows(in.shells);
  ReadScalarPoints(in);
  return in;
}

void SpendRows(std::size_t count, SourcePlace place, NastranLoadInput& in) {
  if (count > in.rowsLeft) {
    StopImport(in.report, place,
               "the subcases of this deck have more than " + std::to_string(MostRows) +
                   " supports and loads in all: import it in parts, with fewer subcases in each");
  }
  in.rowsLeft -= count;
}

std::pair<std::size_t, std::size_t> CardsOfSet(const std::vector<CardOfSet>& index,
                                               std::int64_t set) {
  const auto begin = std::partition_point(index.begin(), index.end(),
                                          [set](const CardOfSet& row) { return row.set < set; });
  const auto end = std::partition_point(begin, index.end(),
                                        [set](const CardOfSet& row) { return row.set == set; });
  return {static_cast<std::size_t>(begin - index.begin()),
          static_cast<std::size_t>(end - index.begin())};
}

void SortBySet(std::vector<CardOfSet>& index) {
  std::stable_sort(index.begin(), index.end(),
                   [](const CardOfSet& a, const CardOfSet& b) { return a.set < b.set; });
}

void ReportSetCard(const NastranCard& card, Fate fate, std::string_view reason,
                   NastranLoadInput& in) {
  std::string example(card.name);
  example += ' ';
  example += FieldOf(in.deck, card, 2);
  ReportCard(card.name, fate, reason, card.place, example, in.report);
}

void ReportExcess(const NastranCard& card, std::size_t k, NastranLoadInput& in) {
  for (; k < card.fieldCount; ++k) {
    if (DataField(in.deck, card, k).empty()) continue;
    ReportSetCard(card, Fate::Limited, "it has more fields than are read", in);
    return;
  }
}

std::int32_t FindNode(const NastranCard& card, std::int64_t number, NastranLoadInput& in) {
  const auto at = in.numbers.nodes.find(number);
  if (at != in.numbers.nodes.end()) return at->second;
  std::string example(card.name);
  example += ' ';
  example += FieldOf(in.deck, card, 2);
  example += ": " + std::to_string(number);
  const bool isScalar = IsScalarPoint(number, in);
  ReportCard(card.name, isScalar ? Fate::Lost : Fate::Refused,
             isScalar ? "scalar points have no counterpart" : "it names a node that does not exist",
             card.place, example, in.report);
  return -1;
}

const NastranSystem* FindSystem(const NastranCard& card, std::int64_t number,
                                NastranLoadInput& in) {
  const auto at = in.systems.systems.find(number);
  if (at != in.systems.systems.end()) return &at->second;
  if (number == 0) return &GlobalSystem;
  ReportSetCard(card, Fate::Refused, "it names a coordinate system that does not exist", in);
  return nullptr;
}

CardNumbers ReadNumberList(const NastranCard& card, std::size_t k, const NastranLoadInput& in) {
  CardNumbers list;
  const NastranRow row = RowOf(in, card);
  bool isRange = false;
  for (; k < card.fieldCount; ++k) {
    const std::string_view text = DataField(in.deck, card, k);
    if (text.empty()) continue;
    if (IsWord(text, "THRU")) {
      if (isRange || list.singles.empty()) break;
      isRange = true;
      continue;
    }
    const std::int64_t number = IntegerField(row, FieldNumber(k), 0);
    if (isRange) {
      const std::int64_t first = list.singles.back();
      list.singles.pop_back();
      list.ranges.emplace_back(std::min(first, number), std::max(first, number));
      isRange = false;
    } else {
      list.singles.push_back(number);
    }
  }
  if (k < card.fieldCount || isRange) {
    StopImport(in.report, card.place,
               std::string(card.name) + ": THRU stands between two numbers, and here it does not");
  }
  return list;
}

std::pair<std::size_t, std::size_t> RowsInRange(const std::vector<NumberedRow>& rows,
                                                std::int64_t first, std::int64_t last) {
  const auto begin = std::partition_point(
      rows.begin(), rows.end(), [first](const NumberedRow& row) { return row.number < first; });
  const auto end = std::partition_point(
      begin, rows.end(), [last](const NumberedRow& row) { return row.number <= last; });
  return {static_cast<std::size_t>(begin - rows.begin()),
          static_cast<std::size_t>(end - rows.begin())};
}

}  // namespace kvx
