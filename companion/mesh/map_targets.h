// The groups of a mesh that a map names.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/map_file.h"

namespace kvx {

struct MapTarget {
  MapGroup said;           // what the map says of it
  std::int32_t group = 0;  // row of the model's groups
};

// Finds the groups that the map names, in its order. Throws a Stop, "line 7: ..." where there is no
// such group, or a key does not fit what the group has: thickness without shells.
std::vector<MapTarget> FindTargets(const MapFile& map, const ImportModel& model);

// 'group "deck"'.
std::string NameTarget(const MapTarget& target);

inline const ImportGroup& GroupOf(const ImportModel& model, const MapTarget& target) {
  return model.groups[static_cast<std::size_t>(target.group)];
}

}  // namespace kvx
