// The checks of the mesh, K2xx: what elements share, and what they should share.
#pragma once

#include "check/parts.h"
#include "finding/finding.h"

namespace kvx {

// parts: of this model. tolerance: nodes closer than this are at the same place, model units;
// 0: DefaultTolerance. What cannot be examined goes to model.notChecked.
void CheckMesh(const Parts& parts, double tolerance, CheckedModel& model, FindingList& findings);

}  // namespace kvx
