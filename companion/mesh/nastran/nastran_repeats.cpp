#include "mesh/nastran/nastran_repeats.h"

#include <algorithm>

#include "mesh/nastran/nastran_fields.h"

namespace kvx {

std::string CardText(std::string_view card, std::int64_t number) {
  return std::string(card) + ' ' + std::to_string(number);
}

bool SayTheSame(const NastranDeck& deck, const NastranCard& a, const NastranCard& b) {
  if (a.name != b.name) return false;
  const std::size_t count = std::max(a.fieldCount, b.fieldCount);
  for (std::size_t k = 0; k < count; ++k) {
    const std::string_view fieldA = DataField(deck, a, k), fieldB = DataField(deck, b, k);
    if (fieldA == fieldB) continue;
    double valueA = 0.0, valueB = 0.0;
    const bool areNumbers = ScanReal(fieldA, valueA) && ScanReal(fieldB, valueB);
    if (!areNumbers || valueA != valueB) return false;
  }
  return true;
}

void ReportRepeated(const NastranDeck& deck, const NastranCard& first, const NastranCard& again,
                    std::int64_t number, ImportReport& report) {
  const bool isSame = SayTheSame(deck, first, again);
  ReportCard(again.name, isSame ? Fate::NoEffect : Fate::Refused,
             isSame ? "it says again what a card before says"
                    : "another card has its number and says something else",
             again.place, CardText(again.name, number), report);
}

}  // namespace kvx
