#include "mesh/import_map.h"

#include <vector>

#include "finding/text_layout.h"
#include "mesh/map_file.h"
#include "mesh/map_loads.h"
#include "mesh/map_properties.h"
#include "mesh/map_targets.h"
#include "report/stop.h"

namespace kvx {

namespace {

void MarkEdges(const std::vector<MapTarget>& targets, ImportModel& model) {
  for (const MapTarget& target : targets) {
    const MapGroup& said = target.said;
    if (said.edgeLoad || said.restraint || said.force || said.totalForce) {
      model.groups[static_cast<std::size_t>(target.group)].isEdge = true;
    }
  }
}

}  // namespace

void ApplyImportMap(std::string_view map, const std::string& mapName, ImportModel& model,
                    ImportReport& report) {
  try {
    MapFile file;
    ReadMapFile(map, file);
    const std::vector<MapTarget> targets = FindTargets(file, model);
    SkipGroups(targets, model, report);
    GiveProperties(file, targets, model, report);
    GiveRestraints(targets, model);
    GiveLoads(file, targets, model);
    MarkEdges(targets, model);
  } catch (const korvex::Stop& stop) {
    const bool hasLine = stop.text.rfind("line ", 0) == 0;
    const std::string name = '"' + CleanText(mapName) + '"';
    throw korvex::Stop{stop.kind, name + (hasLine ? ", " : ": ") + stop.text};
  }
}

}  // namespace kvx
