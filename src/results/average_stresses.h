// Corner stresses averaged over neighbouring shell elements.
//
// Each element corner has its own average: over the corners at the same node that lie in nearly the
// same surface (corner_sum.h). At a fold or a junction of plates one node thus has several
// averages.
#pragma once

#include <cstdint>
#include <vector>

#include "model/model.h"

namespace korvex {

// The elements at each node, in table order, each listed once.
struct NodeElements {
  std::vector<std::int64_t> first;     // [nodes + 1] where a node's elements begin in `elements`
  std::vector<std::int32_t> elements;  // element indices, node after node
};

// Fills `lists` for one element kind.
// connectivity: elements x nodesPerElement node indices, element-major; nodeCount: of the model.
void ListNodeElements(const std::vector<std::int32_t>& connectivity, std::int32_t nodesPerElement,
                      std::int32_t nodeCount, NodeElements& lists);

// Averages the corner of four-node element e at `node`, one of its nodes. The result is stored in
// the element's AvgStressTop and AvgStressBottom.
// lists4, lists3: the four-node and three-node elements at each node.
void AverageShell4NodeStress(Model& model, const NodeElements& lists4, const NodeElements& lists3,
                             std::int32_t e, std::int32_t node);

// The same for three-node element e.
void AverageShell3NodeStress(Model& model, const NodeElements& lists4, const NodeElements& lists3,
                             std::int32_t e, std::int32_t node);

// Averages all corners of all shell elements. Throws a Stop where the memory is too small for the
// lists.
void AverageNodeStresses(Model& model, int threads = 1);

}  // namespace korvex
