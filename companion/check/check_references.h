// K101, K113, K114, K123: what the rows of elements refer to.
//
// References to the same missing row are one finding, with all the elements that have it: the
// missing row is the slip.
#pragma once

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// Afterwards the state of an element is Unusable where one of its nodes does not exist or its row
// was not read, Broken where it has a node twice or a node whose place is not known.
void CheckReferences(CheckedModel& model, FindingList& list);

}  // namespace kvx
