// The supports, loads and cases of a map.
#pragma once

#include <vector>

#include "mesh/import_model.h"
#include "mesh/map_file.h"
#include "mesh/map_targets.h"

namespace kvx {

// Adds the map's restraints to all sets of supports, and to a set of its own for cases without one.
void GiveRestraints(const std::vector<MapTarget>& targets, ImportModel& model);

// Adds the map's cases and loads. Throws a Stop, "line 7: ..." where a case is not known or a load
// names none though there are several, or a load along webs meets a beam without one.
void GiveLoads(const MapFile& map, const std::vector<MapTarget>& targets, ImportModel& model);

}  // namespace kvx
