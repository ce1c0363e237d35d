#include "mesh/map_targets.h"

#include <cstddef>
#include <map>
#include <string_view>

namespace kvx {

namespace {

template <typename Value>
void NeedRows(const Maybe<Value>& value, const char* key, std::size_t count, const char* rows,
              const MapTarget& target) {
  if (!value || count > 0) return;
  StopAtLine(value->line,
             NameTarget(target) + " has no " + rows + ", so " + InQuotes(key) + " does not fit.");
}

void CheckFit(const ImportModel& model, const MapTarget& target) {
  const ImportGroup& group = GroupOf(model, target);
  const MapGroup& said = target.said;
  const std::size_t shells = group.shells.size(), beams = group.beams.size();
  NeedRows(said.thickness, "thickness", shells, "shells", target);
  NeedRows(said.pressure, "pressure", shells, "shells", target);
  NeedRows(said.flip, "flip", shells, "shells", target);
  NeedRows(said.section, "section", beams, "lines", target);
  NeedRows(said.orientation, "orientation", beams, "lines", target);
  NeedRows(said.offset, "offset", beams, "lines", target);
  NeedRows(said.mirrored, "mirrored", beams, "lines", target);
  NeedRows(said.lineLoad, "line_load", beams, "lines", target);
  NeedRows(said.edgeLoad, "edge_load", beams, "lines", target);
  NeedRows(said.material, "material", shells + beams, "elements", target);
  NeedRows(said.skip, "skip", shells + beams, "elements", target);
  NeedRows(said.restraint, "restraint", group.nodes.size(), "nodes", target);
  NeedRows(said.force, "force", group.nodes.size(), "nodes", target);
  NeedRows(said.totalForce, "total_force", group.nodes.size(), "nodes", target);
}

}  // namespace

std::string NameTarget(const MapTarget& target) { return "group " + InQuotes(target.said.name); }

std::vector<MapTarget> FindTargets(const MapFile& map, const ImportModel& model) {
  std::map<std::string_view, std::int32_t> rows;
  for (std::size_t k = 0; k < model.groups.size(); ++k) {
    rows.emplace(model.groups[k].name, static_cast<std::int32_t>(k));
  }
  std::vector<MapTarget> targets;
  for (const MapGroup& group : map.groups) {
    const auto at = rows.find(group.name);
    if (at == rows.end()) {
      std::vector<std::string> names;
      for (const ImportGroup& each : model.groups) names.push_back(each.name);
      StopAtLine(group.line, "the mesh has no group " + InQuotes(group.name) + "." +
                                 SuggestWord(group.name, names));
    }
    targets.push_back({group, at->second});
    CheckFit(model, targets.back());
  }
  return targets;
}

}  // namespace kvx
