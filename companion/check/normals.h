// K206: shells whose normals are opposite to those of their neighbours.
//
// Two shells that share an edge have their normals on the same side if they run through the edge in
// opposite directions. Shells that such edges connect without a sharp fold are a patch; within a
// patch the side with fewer shells is named. Patches that meet at a sharp fold, such as a deck and
// the frame at its end, are compared as wholes, and a difference is only a hint: which side of a
// frame is the upper one is free.
// Edges with more than two shells, the joints of girders, are not compared. On a surface with one
// side only (Moebius's strip) normals cannot agree; it is left out.
#pragma once

#include "check/edge_table.h"
#include "finding/finding.h"

namespace kvx {

// A surface with one side only goes to model.notChecked.
void NameOppositeNormals(const EdgeTable& edges, CheckedModel& model, FindingList& findings);

}  // namespace kvx
