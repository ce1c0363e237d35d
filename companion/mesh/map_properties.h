// What a map says of the elements of groups: left out, turned round, their properties.
#pragma once

#include <vector>

#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/map_file.h"
#include "mesh/map_targets.h"

namespace kvx {

// Takes the elements of groups with "skip" out, and reports them.
void SkipGroups(const std::vector<MapTarget>& targets, ImportModel& model, ImportReport& report);

// Gives the elements thickness, material, section, offset and orientation, and flips shells. Where
// a web turns, line loads keep their direction. Throws a Stop, "line 7: ..." where a material is
// not known, two groups give an element different things, or a normal is not clear. Reports beams
// that get another section or orientation, but no offset.
void GiveProperties(const MapFile& map, const std::vector<MapTarget>& targets, ImportModel& model,
                    ImportReport& report);

}  // namespace kvx
