// Case control, supports and loads of a bulk data deck.
#pragma once

#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"
#include "mesh/nastran/nastran_structure.h"

namespace kvx {

// Fills the model's supports and cases: one case for each subcase, or one for the deck. GRID's own
// restraints (PS) belong to every set of supports. Cards of loads and supports that no case asks
// for are reported, as is whatever is not taken over.
void TakeNastranLoads(const NastranDeck& deck, const NastranNumbers& numbers,
                      const NastranSystems& systems, ImportModel& model, ImportReport& report);

}  // namespace kvx
