// Which nodes lie at the same place.
#pragma once

#include <cstdint>
#include <vector>

#include "deck/model_tables.h"

namespace kvx {

// Returns for each node the first one that stays and is no further than `length` from it; a node
// that stays is its own. In the order of the rows: a node stays where none that stays is near. Time
// n log n, wherever the nodes are. Coordinates are finite; length: 0 or more.
std::vector<std::int32_t> FindNearby(const std::vector<korvex::Node>& nodes, double length);

}  // namespace kvx
