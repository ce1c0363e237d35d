// What the routines of supports and loads read: the deck, where its numbers lead, and the model as
// far as it is there. And the small things that all of them need.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"
#include "mesh/nastran/nastran_fields.h"
#include "mesh/nastran/nastran_structure.h"

namespace kvx {

// A number of the deck and its row in the model.
struct NumberedRow {
  std::int64_t number = 0;
  std::int32_t row = -1;
};

struct NastranLoadInput {
  const NastranDeck& deck;
  const NastranNumbers& numbers;
  const NastranSystems& systems;
  const ImportModel& model;
  ImportReport& report;
  std::vector<NumberedRow> nodes;   // ascending numbers
  std::vector<NumberedRow> shells;  // ascending numbers
  // Numbers of scalar points, as ascending ranges that do not touch; both ends included.
  std::vector<std::pair<std::int64_t, std::int64_t>> scalarPoints;
  std::size_t rowsLeft = 0;  // how many more supports and loads may be made
};

NastranLoadInput MakeNastranLoadInput(const NastranDeck& deck, const NastranNumbers& numbers,
                                      const NastranSystems& systems, const ImportModel& model,
                                      ImportReport& report);

// Ends the import where a deck would make more supports and loads than memory can be expected to
// hold: a short deck can ask for any number of them, by ranges, combinations and subcases.
void SpendRows(std::size_t count, SourcePlace place, NastranLoadInput& in);

inline NastranRow RowOf(const NastranLoadInput& in, const NastranCard& card) {
  return {in.deck, card, in.report};
}

// The manual's number of the k-th data field.
inline std::size_t FieldNumber(std::size_t k) { return 2 + k % 8 + 10 * (k / 8); }

// A card and the set that it belongs to.
struct CardOfSet {
  std::int64_t set = 0;
  std::uint32_t card = 0;  // row of the deck's cards
};

// The cards of a set, as rows of an index that is ascending by set: first and one behind the last.
std::pair<std::size_t, std::size_t> CardsOfSet(const std::vector<CardOfSet>& index,
                                               std::int64_t set);

// Sorts an index by set; the cards of a set keep the order of the deck.
void SortBySet(std::vector<CardOfSet>& index);

// Reports the card; its example is its name and its set.
void ReportSetCard(const NastranCard& card, Fate fate, std::string_view reason,
                   NastranLoadInput& in);

// Reports a card that has data from the k-th data field on: where nothing should be.
void ReportExcess(const NastranCard& card, std::size_t k, NastranLoadInput& in);

// The row of a node; -1 where there is none: then the card is reported, as refused or, for a scalar
// point, as lost.
std::int32_t FindNode(const NastranCard& card, std::int64_t number, NastranLoadInput& in);

// nullptr where there is no such system: then the card is refused.
const NastranSystem* FindSystem(const NastranCard& card, std::int64_t number, NastranLoadInput& in);

// Single numbers and ranges (both ends included) of a list: 4 7 12 THRU 20 31.
struct CardNumbers {
  std::vector<std::int64_t> singles;
  std::vector<std::pair<std::int64_t, std::int64_t>> ranges;
};

// Reads the data fields from the k-th on. Blank fields are passed over. Ends the import where a
// field is neither a number nor THRU, or where THRU has no end.
CardNumbers ReadNumberList(const NastranCard& card, std::size_t k, const NastranLoadInput& in);

// The part of ascending rows that lies in a range: first and one behind the last.
std::pair<std::size_t, std::size_t> RowsInRange(const std::vector<NumberedRow>& rows,
                                                std::int64_t first, std::int64_t last);

}  // namespace kvx
