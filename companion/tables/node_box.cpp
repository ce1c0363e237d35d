#include "tables/node_box.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvx {

NodeBox MeasureNodeBox(const korvex::ModelTables& tables) {
  constexpr double Infinite = std::numeric_limits<double>::infinity();
  korvex::Vector3 low{Infinite, Infinite, Infinite}, high{-Infinite, -Infinite, -Infinite};
  for (const korvex::Node& node : tables.Nodes) {
    const korvex::Vector3 place{node.x, node.y, node.z};
    for (std::size_t i = 0; i < 3; ++i) {
      if (!std::isfinite(place[i])) continue;
      low[i] = std::min(low[i], place[i]);
      high[i] = std::max(high[i], place[i]);
    }
  }
  NodeBox box;
  korvex::Vector3 size{};
  for (std::size_t i = 0; i < 3; ++i) {
    if (low[i] > high[i]) continue;
    box.middle[i] = 0.5 * low[i] + 0.5 * high[i];
    size[i] = high[i] - low[i];
  }
  box.diagonal = std::hypot(size[0], size[1], size[2]);
  return box;
}

}  // namespace kvx
