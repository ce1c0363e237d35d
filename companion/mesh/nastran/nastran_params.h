// PARAM cards.
#pragma once

#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"

namespace kvx {

// Reports a PARAM card, which is taken by nobody; WTMASS is taken by the materials.
void ReportParam(const NastranDeck& deck, const NastranCard& card, ImportReport& report);

// The factor of all masses, PARAM WTMASS; 1 where there is none.
double MassFactor(const NastranDeck& deck, ImportReport& report);

}  // namespace kvx
