// K609: offsets of beams that are much larger than their sections, as by a mistaken unit.
//
// The height is Hw + Tf of a T or L section, Hw of a flat bar, 2 R + T of a tube. Beams of which a
// finding names the section are left out: its height says nothing.
#pragma once

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// BeamSecOz over the height of the section. A section stands on its plate, half a plate away from
// the node, or on another section: mostly below 1, on a section that is deeper some more.
inline constexpr double LargestOffset = 10.0;

// A row that is named is doubtful afterwards.
void CheckOffsets(CheckedModel& model, FindingList& list);

}  // namespace kvx
