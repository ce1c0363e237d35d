#include "mesh/gmsh/gmsh_groups.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "mesh/gmsh/gmsh_element_types.h"

namespace kvx {

namespace {

constexpr std::array<const char*, 4> OneOf = {"point", "line", "surface", "volume"};
constexpr std::array<const char*, 4> SeveralOf = {"points", "lines", "surfaces", "volumes"};

using GroupKey = std::pair<std::int32_t, std::int32_t>;  // dimension, tag
using NamesByKey = std::map<GroupKey, const GmshName*>;

std::string TagText(const GroupKey& key) {
  return std::string(OneOf[static_cast<std::size_t>(key.first)]) + ' ' + std::to_string(key.second);
}

NamesByKey ListNames(const GmshMesh& mesh, const ImportReport& report) {
  NamesByKey names;
  for (const GmshName& name : mesh.names) {
    const auto [at, isNew] = names.emplace(GroupKey(name.dimension, name.tag), &name);
    if (!isNew && at->second->name != name.name) {
      StopImport(report, name.place,
                 "physical " + TagText(at->first) + " has two names, \"" + at->second->name +
                     "\" and \"" + name.name + '"');
    }
  }
  return names;
}

void AddNodes(const ImportModel& model, std::int32_t type, std::int32_t row,
              std::vector<std::int32_t>& nodes) {
  const auto at = static_cast<std::size_t>(row);
  if (type == GmshPoint) {
    nodes.push_back(row);
  } else if (type == GmshLine) {
    nodes.insert(nodes.end(), model.beams[at].nodes.begin(), model.beams[at].nodes.end());
  } else {
    const ImportShell& shell = model.shells[at];
    nodes.insert(nodes.end(), shell.nodes.begin(),
                 shell.nodes.begin() + static_cast<std::ptrdiff_t>(CornersOf(shell)));
  }
}

void SortOnce(std::vector<std::int32_t>& rows) {
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}

// The group of members[begin ..) that have the same key; without a name. Returns the end.
std::size_t GatherGroup(const GmshMesh& mesh, const std::vector<GmshMember>& members,
                        const std::vector<std::int32_t>& rows, std::size_t begin,
                        const ImportModel& model, ImportGroup& group) {
  const GmshMember& first = members[begin];
  group.dimension = first.dimension;
  std::size_t k = begin;
  for (; k < members.size(); ++k) {
    const GmshMember& member = members[k];
    if (member.dimension != first.dimension || member.tag != first.tag) break;
    const GmshElement& element = mesh.elements[member.element];
    const std::int32_t row = rows[member.element];
    if (row < 0) continue;
    if (group.place.line == 0) group.place = {0, element.line};
    AddNodes(model, element.type, row, group.nodes);
    if (element.type == GmshLine) group.beams.push_back(row);
    if (element.type == GmshTriangle || element.type == GmshQuadrangle) group.shells.push_back(row);
  }
  SortOnce(group.nodes);
  return k;
}

// The shells that are in none of the groups so far.
ImportGroup GatherRest(const ImportModel& model) {
  std::vector<bool> isIn(model.shells.size(), false);
  for (const ImportGroup& group : model.groups) {
    for (const std::int32_t shell : group.shells) isIn[static_cast<std::size_t>(shell)] = true;
  }
  ImportGroup rest;
  rest.dimension = 2;
  for (std::size_t k = 0; k < isIn.size(); ++k) {
    if (isIn[k]) continue;
    rest.shells.push_back(static_cast<std::int32_t>(k));
    AddNodes(model, GmshTriangle, static_cast<std::int32_t>(k), rest.nodes);
  }
  SortOnce(rest.nodes);
  return rest;
}

// Makes the names of groups unique. keys: [groups].
void TellApart(const std::vector<GroupKey>& keys, std::vector<ImportGroup>& groups) {
  const auto suffixed = [&](std::size_t k, bool byTag) {
    const std::string suffix =
        byTag ? TagText(keys[k]) : SeveralOf[static_cast<std::size_t>(keys[k].first)];
    return groups[k].name + " (" + suffix + ')';
  };
  for (const bool byTag : {false, true}) {
    std::map<std::string, std::size_t> counts;
    for (const ImportGroup& group : groups) ++counts[group.name];
    for (std::size_t k = 0; k < groups.size(); ++k) {
      if (counts[groups[k].name] > 1) groups[k].name = suffixed(k, byTag);
    }
  }
  // Only names that were meant to look like this are still alike.
  std::set<std::string> taken;
  for (ImportGroup& group : groups) {
    while (!taken.insert(group.name).second) group.name += '\'';
  }
}

void ReportEmptyNames(const GmshMesh& mesh, const std::set<GroupKey>& found, ImportReport& report) {
  for (const GmshName& name : mesh.names) {
    if (found.count({name.dimension, name.tag}) > 0) continue;
    ReportCard("$PhysicalNames", Fate::Lost, "a physical group without elements that are taken",
               name.place, '"' + name.name + '"', report);
  }
}

}  // namespace

void BuildGmshGroups(const GmshMesh& mesh, const std::vector<GmshMember>& members,
                     const std::vector<std::int32_t>& rows, ImportModel& model,
                     ImportReport& report) {
  const NamesByKey names = ListNames(mesh, report);
  std::vector<GroupKey> keys;
  for (std::size_t begin = 0; begin < members.size();) {
    const GroupKey key(members[begin].dimension, members[begin].tag);
    ImportGroup group;
    begin = GatherGroup(mesh, members, rows, begin, model, group);
    if (group.nodes.empty()) continue;
    const auto named = names.find(key);
    group.name = named == names.end() ? TagText(key) : named->second->name;
    if (group.name.empty()) group.name = TagText(key);
    group.source = "physical " + TagText(key);
    keys.push_back(key);
    model.groups.push_back(std::move(group));
  }
  ReportEmptyNames(mesh, {keys.begin(), keys.end()}, report);
  ImportGroup rest = GatherRest(model);
  if (!rest.shells.empty()) {
    rest.name = members.empty() ? "all" : "rest";
    rest.source = "surfaces of no physical group";
    keys.emplace_back(2, 0);
    model.groups.push_back(std::move(rest));
  }
  TellApart(keys, model.groups);
}

}  // namespace kvx
