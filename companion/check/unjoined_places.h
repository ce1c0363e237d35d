// Where elements touch but are not connected: K201 seams and K202 pairs of coincident nodes, K204
// free edges on other shells, K205 hanging nodes.
//
// All nodes of one seam or crack make one finding: nodes at the same place, neighbours along an
// edge, and a node with those of the element on which it lies. What most of a group's nodes are
// decides which finding it is.
#pragma once

#include <vector>

#include "check/coincident_nodes.h"
#include "check/edge_table.h"
#include "check/hanging_nodes.h"
#include "finding/finding.h"

namespace kvx {

// tolerance: the one with which the nodes were found.
void NameUnjoinedPlaces(const CheckedModel& model, const CoincidentNodes& coincident,
                        const std::vector<HangingNode>& hanging, const EdgeTable& edges,
                        double tolerance, FindingList& findings);

}  // namespace kvx
