#include "mesh/nastran/nastran_elements.h"

#include <algorithm>
#include <string>

#include "mesh/nastran/nastran_repeats.h"

namespace kvx {

void ReportElement(const NastranCard& card, std::int64_t number, Fate fate, std::string_view reason,
                   NastranElements& elements) {
  ReportCard(card.name, fate, reason, card.place, CardText(card.name, number),
             elements.stock.report);
}

bool IsNewElement(const NastranCard& card, std::int64_t number, NastranElements& elements) {
  const NastranDeck& deck = elements.stock.deck;
  const auto isRepeated = [&](const std::unordered_map<std::int64_t, std::int32_t>& rows,
                              const std::vector<std::uint32_t>& cards) {
    const auto at = rows.find(number);
    if (at == rows.end()) return false;
    const NastranCard& first = deck.cards[cards[static_cast<std::size_t>(at->second)]];
    ReportRepeated(deck, first, card, number, elements.stock.report);
    return true;
  };
  return !isRepeated(elements.numbers.shells, elements.shellCards) &&
         !isRepeated(elements.numbers.beams, elements.beamCards);
}

std::int32_t NodeOfField(const NastranRow& row, std::size_t field, std::int64_t number,
                         NastranElements& elements) {
  const std::int64_t node = NeedNumber(row, field);
  const auto at = elements.numbers.nodes.find(node);
  if (at != elements.numbers.nodes.end()) return at->second;
  ReportCard(row.card.name, Fate::Refused, "a node of it does not exist", row.card.place,
             CardText(row.card.name, number) + ", node " + std::to_string(node),
             elements.stock.report);
  return -1;
}

std::int32_t TypeRow(std::string_view name, ImportModel& model) {
  const auto at = std::find(model.typeNames.begin(), model.typeNames.end(), name);
  const auto row = static_cast<std::int32_t>(at - model.typeNames.begin());
  if (at == model.typeNames.end()) model.typeNames.emplace_back(name);
  return row;
}

}  // namespace kvx
