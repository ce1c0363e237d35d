// The case control of a bulk data deck: which sets of supports and loads each subcase asks for.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"

namespace kvx {

// A load case as the deck asks for it. A set of 0: none.
struct NastranCase {
  std::string name;  // "subcase 3", "subcase 3 wind"; "" for the only case of a deck without any
  std::int64_t supports = 0;  // SPC
  std::int64_t loads = 0;     // LOAD
  SourcePlace place;
  SourcePlace supportsPlace, loadsPlace;  // of the commands that ask for them
};

struct NastranCaseControl {
  std::vector<NastranCase> cases;
  bool asks = false;  // whether it asks for anything; else the deck is bulk data alone
};

// Reads the commands. What stands above the first subcase holds for all that say nothing else.
// Reports the commands that are not taken over. A deck without subcases has one case.
void ReadCaseControl(const NastranDeck& deck, ImportReport& report, NastranCaseControl& control);

}  // namespace kvx
