// How many shells the detail models of all beams have, before they are made.
#pragma once

#include "deck/model_tables.h"

namespace kvx {

// As a run makes them (beamshell/extrude_outline.h). Beams whose section or length says nothing
// count as one step, beams without a section table not at all. A double: slips of units give more
// than any integer holds.
double CountDetailShells(const korvex::ModelTables& tables);

}  // namespace kvx
