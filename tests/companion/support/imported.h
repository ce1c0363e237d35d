// Models as kvx import leaves them, for tests: numbers of a deck that resemble no row.
#pragma once

#include "deck/model_tables.h"
#include "support/model_text.h"
#include "tables/model_origin.h"

namespace kvx::test {

// The tables of a model file.
korvex::ModelTables TablesOfText(const korvex::test::ModelText& model);

// Node k is 1001 + 2 k; CQUAD4 k is 5001 + 3 k, CTRIA3 k 6001 + 3 k, CBAR k 7001 + 3 k. Materials
// are "MAT1 1", "MAT1 2", ...; thicknesses "PSHELL 10", "PSHELL 20", ..., and groups of the shells
// that have them; sections "PBARL T1", "PBARL L1", "PBARL C1". All beams are the group
// "stiffeners", the first two nodes the group "edge". The deck is deck.bdf.
ModelOrigin MakeOrigin(const korvex::ModelTables& tables);

// The text of its import.json.
std::string OriginText(const ModelOrigin& origin);

}  // namespace kvx::test
