// Numbers that several cards claim, and how cards are called in messages.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"

namespace kvx {

// "CQUAD4 17".
std::string CardText(std::string_view card, std::int64_t number);

// Whether both cards say the same: equal texts, or numbers of equal value.
bool SayTheSame(const NastranDeck& deck, const NastranCard& a, const NastranCard& b);

// Reports a card whose number another card has already: without effect where it says the same,
// else refused.
void ReportRepeated(const NastranDeck& deck, const NastranCard& first, const NastranCard& again,
                    std::int64_t number, ImportReport& report);

}  // namespace kvx
