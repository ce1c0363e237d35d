// K206: shells whose normals are opposite to those of their neighbours.
//
// Two shells that share an edge have their normals on the same side if they run through the edge in
// opposite directions. Where three or more shells meet, such as at girders, each shell is compared
// with the one that runs on in its plane. Shells that are compared make a patch; within a patch the
// side with fewer shells is named; that is a hint where the sides meet at such joints only and no
// pressure acts. Across a sharp fold no normals are right or wrong: only where
// pressure acts on one plate from inside the corner, on the other from outside, one hint says so.
// On a surface with one side only (Moebius's strip) normals cannot agree; it is left out.
#pragma once

#include "check/edge_table.h"
#include "finding/finding.h"

namespace kvx {

// A surface with one side only goes to model.notChecked.
void NameOppositeNormals(const EdgeTable& edges, CheckedModel& model, FindingList& findings);

}  // namespace kvx
