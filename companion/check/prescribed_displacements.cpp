#include "check/prescribed_displacements.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvx {

double MeasureExtent(const korvex::ModelTables& tables) {
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
  korvex::Vector3 size{};
  for (std::size_t i = 0; i < 3; ++i) size[i] = low[i] <= high[i] ? high[i] - low[i] : 0.0;
  return std::hypot(size[0], size[1], size[2]);
}

bool IsPrescribing(std::size_t dof, double force, double extent) {
  const double smallest = dof < 3 ? SmallestDisplacement * extent : SmallestRotation;
  return smallest > 0.0 && std::abs(force) / Penalty >= smallest;
}

}  // namespace kvx
