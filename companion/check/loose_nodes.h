// K203: nodes that no element uses.
//
// Not named are nodes that are fixed in all six degrees of freedom and nodes on which a force acts:
// those are matters of the supports and of the loads.
#pragma once

#include "check/parts.h"
#include "finding/finding.h"

namespace kvx {

// Neighbours in the table make one finding. Where an element's nodes are not known, no node is
// named, as that element may have used it; a sentence goes to model.notChecked.
void NameLooseNodes(const Parts& parts, CheckedModel& model, FindingList& findings);

}  // namespace kvx
