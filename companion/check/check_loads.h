// K401 to K408: the rows of the loads, and whether there are any.
#pragma once

#include "check/fixed_dofs.h"
#include "check/parts.h"
#include "finding/finding.h"

namespace kvx {

void CheckLoads(const CheckedModel& model, const Parts& parts, const FixedDofs& dofs,
                FindingList& findings);

}  // namespace kvx
