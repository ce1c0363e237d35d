// Nodes at the same place that no element joins.
//
// The nodes are taken one after another; each that is still alone gathers all nodes within the
// tolerance that are still alone, too. So every place is visited a bounded number of times, also
// where all nodes lie at one place.
#pragma once

#include <cstdint>
#include <vector>

#include "check/checked_model.h"
#include "check/node_tree.h"

namespace kvx {

struct CoincidentNodes {
  std::vector<std::int32_t> leaderOf;  // [NPOIN] the lowest node at the same place; -1: alone
};

// tree: the nodes of elements. Nodes that elements join with each other, directly or through others
// at the same place, are not named: such an element has no length there, which is another matter.
void FindCoincidentNodes(const CheckedModel& model, const NodeTree& tree, double tolerance,
                         CoincidentNodes& coincident);

// Takes the places back at which one of these nodes lies.
void LeaveOutPlaces(const std::vector<std::int32_t>& nodes, CoincidentNodes& coincident);

}  // namespace kvx
