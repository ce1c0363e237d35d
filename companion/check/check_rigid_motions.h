// K301, K306: for each part the rigid-body motions that its supports leave free, or hardly hold.
#pragma once

#include <vector>

#include "check/fixed_dofs.h"
#include "check/parts.h"
#include "check/rigid_motions.h"
#include "finding/finding.h"

namespace kvx {

// moves: [parts] 1 where K301 tells of the part.
// partsOnOddFlags: [parts] 1 where a part can move, and could not if the flags other than 0 and 1
// fixed their dofs: K302 tells of these parts, so K301 does not.
// Where rows are lost that would decide, nothing is found, and model.notChecked says so.
void CheckRigidMotions(CheckedModel& model, const Parts& parts, const FixedDofs& dofs,
                       std::vector<char>& moves, std::vector<char>& partsOnOddFlags,
                       FindingList& findings);

// The nodes of each part, in short. [parts]
std::vector<Body> MeasureBodies(const CheckedModel& model, const Parts& parts);

}  // namespace kvx
