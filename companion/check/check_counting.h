// K124: whether the file counts its nodes from 1.
#pragma once

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// Adds K124 and returns true where no row refers to node 0, the largest reference is one beyond the
// last node, and the elements are smaller with the nodes before: every reference means the node
// before. The running numbers out of step (K017)
// are the same slip, and leave the list.
bool CheckCounting(const CheckedModel& model, FindingList& findings);

}  // namespace kvx
