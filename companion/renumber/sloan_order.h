// Sloan's order (Sloan 1986): next is the node that opens few new nodes and lies far from the other
// end of its component.
//
// Priority: distance weight x levels to the end - opening weight x nodes that it would open; of
// equal ones the first that came near goes first, so that no node waits long (a long column).
// Scaled, the opening counts levels / largest degree times as much (Kumfert & Pothen 1997): that
// makes up to 12 % less of the matrix of plates and grillages, but more of long rings.
#pragma once

#include <cstdint>
#include <vector>

#include "renumber/node_graph.h"

namespace kvx {

struct SloanWeights {
  std::int32_t distance = 1, opening = 2;
  bool isScaled = false;
};

inline constexpr SloanWeights OriginalWeights{1, 2, false};
inline constexpr SloanWeights ScaledWeights{1, 1, true};

// Returns order[k]: the node at place k. Components one after the other. The time grows with the
// neighbours of all nodes alone.
std::vector<std::int32_t> SloanOrder(const NodeGraph& graph, const SloanWeights& weights);

}  // namespace kvx
