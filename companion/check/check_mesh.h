// The checks of the mesh, K2xx: what elements share, and what they should share.
#pragma once

#include <vector>

#include "check/gap.h"
#include "check/parts.h"
#include "finding/finding.h"

namespace kvx {

// parts: of this model. tolerance: nodes closer than this are at the same place, model units;
// 0: DefaultTolerance. What cannot be examined goes to model.notChecked.
// gaps: gets the nodes that K201, K202, K204 and K205 tell apart.
void CheckMesh(const Parts& parts, double tolerance, CheckedModel& model, std::vector<Gap>& gaps,
               FindingList& findings);

}  // namespace kvx
