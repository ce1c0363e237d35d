// K102 .. K105: the axes of beams.
//
// The solver makes a beam's axes from d = node 2 - node 1 and the orientation vector v by c = v x d
// (beam/beam_frame.h). Without length, without a vector or with a vector along the axis they are
// divided by zero. It adds the vector to node 1 and takes node 1 off again: digits of v below those
// of the coordinates are lost.
#pragma once

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// The sine of the angle between axis and orientation vector below which the vector is nearly
// parallel: 0.06 degrees. Nobody means such a vector, and a node that moves by a thousandth of the
// beam's length turns its web by a right angle.
inline constexpr double NearlyParallelSine = 1e-3;

// Beams without axes are broken afterwards.
void CheckBeams(CheckedModel& model, FindingList& list);

}  // namespace kvx
