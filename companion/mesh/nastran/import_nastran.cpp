#include "mesh/nastran/import_nastran.h"

#include "mesh/nastran/nastran_cards.h"
#include "mesh/nastran/nastran_deck.h"
#include "mesh/nastran/nastran_loads.h"
#include "mesh/nastran/nastran_structure.h"

namespace kvx {

void ImportNastran(const SourceFile& file, const IncludeReader& include, ImportModel& model,
                   ImportReport& report) {
  NastranDeck deck;
  ReadNastranDeck(file, include, deck, report);
  model.format = "Nastran bulk data";
  NastranNumbers numbers;
  NastranSystems systems;
  TakeNastranStructure(deck, model, numbers, systems, report);
  TakeNastranLoads(deck, numbers, systems, model, report);
  ReportOtherCards(deck, report);
}

}  // namespace kvx
