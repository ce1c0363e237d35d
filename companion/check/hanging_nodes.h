// Nodes that lie on an element without being one of its nodes: on the edge of a shell, inside it,
// or on a beam's axis between its ends.
//
// For each element the nodes round it are taken from a tree of boxes and looked at one by one. The
// surface of a quadrilateral is the bilinear one, so a warped shell has its nodes where they are
// seen. Elements that cross without a node at the crossing are not found: a diagonal bracing is so.
// Nor are the arms of a spider, stiff beams from one node to several that lie behind one another.
#pragma once

#include <cstdint>
#include <vector>

#include "check/checked_model.h"
#include "check/node_tree.h"

namespace kvx {

struct HangingNode {
  std::int32_t node = 0;
  korvex::Section section = korvex::Section::Shells4;  // of the element on which it lies
  std::int32_t row = 0;
  std::int32_t edge = -1;  // of that element, between its nodes edge and edge + 1; -1: inside
};

// What touches without being joined, and what only seems to.
struct HangingNodes {
  std::vector<HangingNode> all;  // sorted by node
  std::vector<std::int32_t>
      spiderMiddles;  // nodes from which the arms of a spider start, ascending
};

// Fills `found`. tree: the nodes of elements. Elements that a finding names are
// left out, and so are their nodes and their neighbours. Returns false where so many elements
// overlap that the search was given up.
bool FindHangingNodes(const CheckedModel& model, const NodeTree& tree, double tolerance,
                      HangingNodes& found);

}  // namespace kvx
