// Which cards of a bulk data deck are taken by which routine, and what the others are.
#pragma once

#include <string_view>

#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"

namespace kvx {

enum class NastranPart {
  Structure,  // by TakeNastranStructure
  Loads,      // by TakeNastranLoads
  Neither,    // by none: its fate and reason stand in the table
};

struct NastranCardKind {
  std::string_view name;
  NastranPart part = NastranPart::Neither;
  Fate fate = Fate::Lost;   // of Neither
  std::string_view reason;  // of Neither
};

// The kind of a card; one that is not known is lost, with the reason "unknown card".
NastranCardKind KindOfCard(std::string_view name);

// Reports the cards that are taken by neither routine.
void ReportOtherCards(const NastranDeck& deck, ImportReport& report);

}  // namespace kvx
