// K121: elements that stand twice.
//
// Shells on the same nodes, in any order. Beams on the same nodes with the same section, offset,
// material and orientation vector: two different stiffeners on the same nodes may be meant.
#pragma once

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// All but the first of equal elements are broken afterwards.
void CheckDoubledElements(CheckedModel& model, FindingList& list);

}  // namespace kvx
