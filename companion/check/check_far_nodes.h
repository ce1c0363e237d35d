// K603: a node far away from all others, as by a digit too many in a coordinate.
//
// A node of shells is far where it stands off the box of its neighbours by more than ten times the
// box's size, and by more than the longest edge of other elements: needles are another finding. A
// node of beams alone is far where it stands off the box of all other nodes by more than twice its
// size, and its beams are more than three times as long as all other elements: beams may be much
// longer than what they hold. Nodes of no element are another finding.
#pragma once

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// In the tips of narrow sectors, the finest legitimate case, the ratio is below 6 with an opening
// of ten degrees.
inline constexpr double FarRatio = 10.0;

// A digit too many at one end of a structure puts a node nine times its extent away, less at a node
// within it. A mast may stand out as far, but not with beams so much longer than all others.
inline constexpr double BeamFarRatio = 2.0;
inline constexpr double LongRatio = 3.0;

// Fewer nodes have no size to compare with.
inline constexpr std::size_t FewestNodes = 5;

// A node that is named is doubtful afterwards, its elements are broken.
void CheckFarNodes(CheckedModel& model, FindingList& list);

}  // namespace kvx
