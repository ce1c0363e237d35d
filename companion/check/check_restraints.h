// K302 to K305: the rows of the restraints, one by one.
#pragma once

#include <vector>

#include "check/fixed_dofs.h"
#include "check/parts.h"
#include "finding/finding.h"

namespace kvx {

// partsOnOddFlags: [parts] 1 where a part can move because of flags other than 0 and 1
// (check_rigid_motions.h): such a flag is an error there.
void CheckRestraints(const CheckedModel& model, const Parts& parts, const FixedDofs& dofs,
                     const std::vector<char>& partsOnOddFlags, FindingList& findings);

}  // namespace kvx
