#include "mesh/abaqus/abaqus_groups.h"

#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kvx {

namespace {

// A name that no group has yet: "deck", "deck (nodes)", "deck (nodes) 2".
std::string GroupName(const AbaqusSet& set, const std::unordered_set<std::string>& clashing,
                      std::unordered_set<std::string>& used) {
  std::string name = set.name;
  if (clashing.count(name) > 0) name += set.hasElements ? " (elements)" : " (nodes)";
  const std::string first = name;
  // Of a part and of the assembly, or quoted in different case.
  for (int k = 2; !used.insert(name).second; ++k) name = first + " " + std::to_string(k);
  return name;
}

// Names of sets of nodes that sets of elements have, too.
std::unordered_set<std::string> ClashingNames(const AbaqusMesh& mesh) {
  std::unordered_set<std::string> nodeNames;
  std::unordered_set<std::string> clashing;
  for (const AbaqusSet& set : mesh.sets) {
    if (!set.hasElements) nodeNames.insert(set.name);
  }
  for (const AbaqusSet& set : mesh.sets) {
    if (set.hasElements && nodeNames.count(set.name) > 0) clashing.insert(set.name);
  }
  return clashing;
}

void FillGroup(const AbaqusSet& set, ImportGroup& group) {
  group.place = set.place;
  if (!set.hasElements) {
    group.nodes = set.members;
    return;
  }
  for (const std::int32_t code : set.members) {
    if (KindOfCode(code) == AbaqusElementKind::Shell) group.shells.push_back(RowOfCode(code));
    if (KindOfCode(code) == AbaqusElementKind::Beam) group.beams.push_back(RowOfCode(code));
  }
}

// Groups for the elements that no set has, by type.
void GroupTheRest(AbaqusImport& import, std::unordered_set<std::string>& used) {
  ImportModel& model = import.model;
  std::vector<bool> shells(model.shells.size());
  std::vector<bool> beams(model.beams.size());
  for (const ImportGroup& group : model.groups) {
    for (const std::int32_t shell : group.shells) shells[static_cast<std::size_t>(shell)] = true;
    for (const std::int32_t beam : group.beams) beams[static_cast<std::size_t>(beam)] = true;
  }
  std::vector<ImportGroup> rest(model.typeNames.size());
  for (std::size_t k = 0; k < shells.size(); ++k) {
    const auto type = static_cast<std::size_t>(model.shells[k].type);
    if (!shells[k]) rest[type].shells.push_back(static_cast<std::int32_t>(k));
  }
  for (std::size_t k = 0; k < beams.size(); ++k) {
    const auto type = static_cast<std::size_t>(model.beams[k].type);
    if (!beams[k]) rest[type].beams.push_back(static_cast<std::int32_t>(k));
  }
  for (std::size_t k = 0; k < rest.size(); ++k) {
    if (rest[k].shells.empty() && rest[k].beams.empty()) continue;
    const std::string name = model.typeNames[k] + " in no set";
    rest[k].name = name;
    for (int n = 2; !used.insert(rest[k].name).second; ++n) {
      rest[k].name = name + " " + std::to_string(n);
    }
    rest[k].source = "*ELEMENT, TYPE=" + model.typeNames[k];
    rest[k].place = import.report.cards["*ELEMENT"].first;
    model.groups.push_back(std::move(rest[k]));
  }
}

}  // namespace

void MakeAbaqusGroups(AbaqusImport& import) {
  const std::unordered_set<std::string> clashing = ClashingNames(import.mesh);
  std::unordered_set<std::string> used;
  for (const AbaqusSet& set : import.mesh.sets) {
    ImportGroup group;
    group.name = GroupName(set, clashing, used);
    group.source = std::string(set.hasElements ? "*ELSET " : "*NSET ") + set.name;
    FillGroup(set, group);
    import.model.groups.push_back(std::move(group));
  }
  GroupTheRest(import, used);
}

}  // namespace kvx
