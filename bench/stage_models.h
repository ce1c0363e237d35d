// Models that stages are timed on: stiffened plates and grillages. N, mm.
#pragma once

#include "deck/model_tables.h"

namespace korvex::bench {

// A plate of columns x rows squares of 100.25 mm, clamped along one edge, under pressure and a
// nodal force, with a flat-bar stiffener along every tenth row of nodes.
ModelTables MakeStagePlate(int columns, int rows);

// A square grillage of T girders with `side` fields of 2150 mm a side, clamped along one edge: it
// has 2 side (side + 1) beams, each with a detail model of 20 stations.
ModelTables MakeStageGrillage(int side);

}  // namespace korvex::bench
