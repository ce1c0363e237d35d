// The separate parts of a model: what elements connect, directly or through others.
//
// Union-find over the nodes of all elements whose nodes are known. A node that no such element uses
// belongs to no part.
#pragma once

#include <cstdint>
#include <vector>

#include "check/checked_model.h"

namespace kvx {

// Parts are numbered from 0 in the order of their lowest nodes.
struct Parts {
  std::vector<std::int32_t> partOfNode;     // [NPOIN] -1: a node of no element
  std::vector<std::int32_t> nodeCounts;     // [parts]
  std::vector<std::int32_t> elementCounts;  // [parts]
};

// Fills `parts`. Elements whose state is Unusable, or whose references lead outside, count nowhere.
void FindParts(const CheckedModel& model, Parts& parts);

}  // namespace kvx
