#include "mesh/map_properties.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "mesh/edge_normals.h"
#include "mesh/element_names.h"
#include "mesh/equivalent_loads.h"
#include "mesh/flip_shells.h"
#include "mesh/remove_elements.h"

namespace kvx {

namespace {

using korvex::Vector3;

// Unit vectors that differ by less are the same direction, given with a few digits.
constexpr double SameDirection = 1e-6;

template <typename Value>
bool IsSame(const Value& a, const Value& b) {
  return a == b;
}

bool IsSame(const MapOrientation& a, const MapOrientation& b) {
  return a.alongNormal == b.alongNormal && a.vector == b.vector;
}

bool IsSame(const ImportSection& a, const ImportSection& b) {
  const auto values = [](const ImportSection& s) {
    return std::make_tuple(s.type, s.plates.Hw, s.plates.Tw, s.plates.Bf, s.plates.Tf, s.tube.R,
                           s.tube.T);
  };
  return values(a) == values(b);
}

// Elements of a kind: their rows in a group, how many there are, and their names.
struct ElementKind {
  std::vector<std::int32_t> ImportGroup::*rows;
  std::size_t count = 0;
  std::string (*name)(const ImportModel& model, std::int32_t row);
};

ElementKind ShellKind(const ImportModel& model) {
  return {&ImportGroup::shells, model.shells.size(), NameShell};
}

ElementKind BeamKind(const ImportModel& model) {
  return {&ImportGroup::beams, model.beams.size(), NameBeam};
}

// Which target gives each element a property: [elements] rows of `targets`, -1: none; empty where
// no target does. Throws a Stop where two give different things.
template <typename Value>
std::vector<std::int32_t> FindGivers(const ImportModel& model,
                                     const std::vector<MapTarget>& targets,
                                     Maybe<Value> MapGroup::*member, const char* key,
                                     const ElementKind& kind) {
  std::vector<std::int32_t> givers;
  for (std::size_t t = 0; t < targets.size(); ++t) {
    const Maybe<Value>& value = targets[t].said.*member;
    if (!value) continue;
    givers.resize(kind.count, -1);
    for (const std::int32_t row : GroupOf(model, targets[t]).*kind.rows) {
      std::int32_t& giver = givers[static_cast<std::size_t>(row)];
      if (giver < 0) {
        giver = static_cast<std::int32_t>(t);
        continue;
      }
      const MapTarget& other = targets[static_cast<std::size_t>(giver)];
      if (IsSame((other.said.*member)->value, value->value)) continue;
      StopAtLine(value->line, NameTarget(targets[t]) + " gives " + kind.name(model, row) +
                                  " another " + InQuotes(key) + " than " + NameTarget(other) +
                                  " in line " + std::to_string((other.said.*member)->line) + ".");
    }
  }
  return givers;
}

// Calls give(element, target) for the elements that have a giver.
template <typename Elements, typename Give>
void GiveEach(const std::vector<std::int32_t>& givers, Elements& elements, const Give& give) {
  for (std::size_t k = 0; k < givers.size(); ++k) {
    if (givers[k] >= 0) give(elements[k], static_cast<std::size_t>(givers[k]));
  }
}

// The rows of materials by name; of equal names the first.
std::map<std::string, std::int32_t> NumberMaterials(const ImportModel& model) {
  std::map<std::string, std::int32_t> rows;
  for (const ImportMaterial& each : model.materials) {
    const auto row = static_cast<std::int32_t>(&each - model.materials.data());
    rows.emplace(each.name, row);
  }
  return rows;
}

// A material that the deck has, too, takes its place.
void AddMaterials(const MapFile& map, ImportModel& model) {
  const std::map<std::string, std::int32_t> rows = NumberMaterials(model);
  for (const MapMaterial& material : map.materials) {
    const auto at = rows.find(material.name);
    if (at == rows.end()) {
      model.materials.push_back({material.name, material.values});
    } else {
      model.materials[static_cast<std::size_t>(at->second)].values = material.values;
    }
  }
}

void GiveMaterials(const std::vector<MapTarget>& targets, ImportModel& model) {
  const std::map<std::string, std::int32_t> known = NumberMaterials(model);
  std::vector<std::int32_t> rows(targets.size(), -1);  // of materials, [targets]
  for (std::size_t t = 0; t < targets.size(); ++t) {
    const Maybe<std::string>& material = targets[t].said.material;
    if (!material) continue;
    const auto at = known.find(material->value);
    if (at == known.end()) {
      std::vector<std::string> names;
      for (const ImportMaterial& each : model.materials) names.push_back(each.name);
      StopAtLine(material->line, NameTarget(targets[t]) + ": there is no material " +
                                     InQuotes(material->value) + "." +
                                     SuggestWord(material->value, names));
    }
    rows[t] = at->second;
  }
  const auto give = [&](auto& element, std::size_t t) { element.material = rows[t]; };
  GiveEach(FindGivers(model, targets, &MapGroup::material, "material", ShellKind(model)),
           model.shells, give);
  GiveEach(FindGivers(model, targets, &MapGroup::material, "material", BeamKind(model)),
           model.beams, give);
}

void GiveThicknesses(const std::vector<MapTarget>& targets, ImportModel& model) {
  const auto first = static_cast<std::int32_t>(model.thicknesses.size());
  std::vector<std::int32_t> rows(targets.size(), first);
  for (std::size_t t = 0; t < targets.size(); ++t) {
    const Maybe<double>& thickness = targets[t].said.thickness;
    if (!thickness) continue;
    rows[t] = static_cast<std::int32_t>(model.thicknesses.size());
    model.thicknesses.push_back({targets[t].said.name, thickness->value});
  }
  GiveEach(FindGivers(model, targets, &MapGroup::thickness, "thickness", ShellKind(model)),
           model.shells, [&](ImportShell& shell, std::size_t t) { shell.thickness = rows[t]; });
}

// Beams of a target that stand otherwise than the deck says, or in a way that it does not tell.
struct Misplaced {
  std::size_t count = 0;
  std::string first;
};

// Reports them; beams: [targets].
void ReportMisplaced(const ImportModel& model, const std::vector<MapTarget>& targets,
                     const std::vector<Misplaced>& beams, std::string_view reason,
                     ImportReport& report) {
  for (std::size_t t = 0; t < targets.size(); ++t) {
    if (beams[t].count == 0) continue;
    const ImportGroup& group = GroupOf(model, targets[t]);
    ReportCard(NameGroup(group), Fate::Limited, reason, group.place, beams[t].first, report,
               beams[t].count);
  }
}

void AddMisplaced(const ImportModel& model, std::size_t beam, Misplaced& to) {
  if (to.count++ == 0) to.first = NameBeam(model, static_cast<std::int32_t>(beam));
}

// Which beams have a section in the deck that has no counterpart: [beams].
std::vector<char> FindLacking(const ImportModel& model) {
  std::vector<char> isLacking(model.beams.size(), 0);
  for (const ImportGroup& group : model.groups) {
    if (group.lacks.empty()) continue;
    for (const std::int32_t row : group.beams) {
      const auto beam = static_cast<std::size_t>(row);
      if (model.beams[beam].section < 0) isLacking[beam] = 1;
    }
  }
  return isLacking;
}

// A new section without an offset stands where the deck's began, or on the nodes where the deck's
// place of it could not be taken over. To be called before sections are given. Only tubes have
// their centre there.
void ReportSectionsWithoutOffset(const ImportModel& model, const std::vector<MapTarget>& targets,
                                 ImportReport& report) {
  const ElementKind kind = BeamKind(model);
  const auto givers = FindGivers(model, targets, &MapGroup::section, "section", kind);
  const auto offsets = FindGivers(model, targets, &MapGroup::offset, "offset", kind);
  const std::vector<char> isLacking = FindLacking(model);
  std::vector<Misplaced> changed(targets.size()), lacking(targets.size());
  for (std::size_t k = 0; k < givers.size(); ++k) {
    if (givers[k] < 0 || (!offsets.empty() && offsets[k] >= 0)) continue;
    const auto t = static_cast<std::size_t>(givers[k]);
    const ImportSection& now = targets[t].said.section->value;
    const bool isTube = now.type == korvex::BeamSecTypeC;
    const std::int32_t row = model.beams[k].section;
    if (row < 0) {
      if (isLacking[k] != 0 && !isTube) AddMisplaced(model, k, lacking[t]);
      continue;
    }
    const ImportSection& before = model.sections[static_cast<std::size_t>(row)];
    const bool areTubes = isTube && before.type == korvex::BeamSecTypeC;
    if (!areTubes && !IsSame(before, now)) AddMisplaced(model, k, changed[t]);
  }
  ReportMisplaced(model, targets, changed,
                  "the map gives another section without an offset: it begins where the deck's "
                  "section began",
                  report);
  ReportMisplaced(model, targets, lacking,
                  "the map gives a section without an offset: the edge of its web stands on the "
                  "nodes",
                  report);
}

void GiveSections(const std::vector<MapTarget>& targets, ImportModel& model, ImportReport& report) {
  ReportSectionsWithoutOffset(model, targets, report);
  std::vector<std::int32_t> rows(targets.size(), -1);
  for (std::size_t t = 0; t < targets.size(); ++t) {
    const Maybe<ImportSection>& section = targets[t].said.section;
    if (!section) continue;
    rows[t] = static_cast<std::int32_t>(model.sections.size());
    model.sections.push_back(section->value);
  }
  const ElementKind kind = BeamKind(model);
  GiveEach(FindGivers(model, targets, &MapGroup::section, "section", kind), model.beams,
           [&](ImportBeam& beam, std::size_t t) {
             beam.section = rows[t];
             // An L keeps the side of the deck's flange; other sections have none.
             const bool isL = targets[t].said.section->value.type == korvex::BeamSecTypeL;
             beam.BeamSecMirrored = beam.BeamSecMirrored && isL;
           });
  GiveEach(
      FindGivers(model, targets, &MapGroup::offset, "offset", kind), model.beams,
      [&](ImportBeam& beam, std::size_t t) { beam.BeamSecOz = targets[t].said.offset->value; });
  GiveEach(
      FindGivers(model, targets, &MapGroup::mirrored, "mirrored", kind), model.beams,
      [&](ImportBeam& beam, std::size_t t) {
        const Placed<bool>& mirrored = *targets[t].said.mirrored;
        beam.BeamSecMirrored = mirrored.value;
        const bool isL =
            beam.section >= 0 &&
            model.sections[static_cast<std::size_t>(beam.section)].type == korvex::BeamSecTypeL;
        if (isL || !mirrored.value) return;
        StopAtLine(mirrored.line, NameTarget(targets[t]) + ": only an L section can be mirrored.");
      });
}

// The orientations that follow shells' normals. beams: rows; givers: [beams of the model].
void FindNormals(const ImportModel& model, const std::vector<MapTarget>& targets,
                 const std::vector<std::int32_t>& givers, std::vector<Vector3>& orientations) {
  std::vector<std::int32_t> beams;
  const auto targetOf = [&](std::size_t beam) -> const MapTarget& {
    return targets[static_cast<std::size_t>(givers[beam])];
  };
  for (std::size_t k = 0; k < givers.size(); ++k) {
    if (givers[k] >= 0 && targetOf(k).said.orientation->value.alongNormal != 0.0) {
      beams.push_back(static_cast<std::int32_t>(k));
    }
  }
  if (beams.empty()) return;
  const std::vector<EdgeNormal> normals = FindEdgeNormals(model, beams);
  for (std::size_t k = 0; k < beams.size(); ++k) {
    const auto beam = static_cast<std::size_t>(beams[k]);
    const Placed<MapOrientation>& said = *targetOf(beam).said.orientation;
    const std::string owner = NameTarget(targetOf(beam)) + ": " + NameBeam(model, beams[k]);
    if (!normals[k].isFound) {
      StopAtLine(said.line, owner +
                                " lies on no edge of a shell, so it has no normal. Give its "
                                "group a vector, as in: orientation = [0, 0, -1]");
    }
    if (!normals[k].isClear) {
      StopAtLine(said.line, owner +
                                " lies between shells whose normals differ by more than 60 "
                                "degrees. Flip some of them, or give its group a vector.");
    }
    for (std::size_t i = 0; i < 3; ++i) {
      orientations[beam][i] = said.value.alongNormal * normals[k].mean[i];
    }
  }
}

// Line loads act along the web: where it turns, they become loads in their old direction.
void KeepLineLoads(const std::vector<Vector3>& webs, ImportModel& model) {
  for (ImportCase& loads : model.cases) {
    const std::vector<korvex::BeamLineLoad> before = std::move(loads.lineLoads);
    loads.lineLoads.clear();
    for (const korvex::BeamLineLoad& each : before) {
      const auto beam = static_cast<std::size_t>(each.element);
      const Vector3 now = BeamAxes(model, model.beams[beam])[2];
      if (now == webs[beam] || korvex::Length(webs[beam]) == 0.0) {
        loads.lineLoads.push_back(each);
      } else {
        AddBeamLoad(model, {each.element, webs[beam], false, 0.0, 1.0, each.q[0], each.q[1]},
                    loads);
      }
    }
  }
}

// The deck's offset was found along its own web. webs: of the deck, [beams]; givers: of the new
// ones.
void ReportTurnedOffsets(const ImportModel& model, const std::vector<MapTarget>& targets,
                         const std::vector<std::int32_t>& givers, const std::vector<Vector3>& webs,
                         ImportReport& report) {
  const auto offsets = FindGivers(model, targets, &MapGroup::offset, "offset", BeamKind(model));
  std::vector<Misplaced> turned(targets.size());
  for (std::size_t k = 0; k < givers.size(); ++k) {
    const ImportBeam& beam = model.beams[k];
    if (givers[k] < 0 || beam.BeamSecOz == 0.0) continue;
    if (!offsets.empty() && offsets[k] >= 0) continue;
    const Vector3 now = BeamAxes(model, beam)[2];
    if (korvex::Length(korvex::Subtract(now, webs[k])) <= SameDirection) continue;
    AddMisplaced(model, k, turned[static_cast<std::size_t>(givers[k])]);
  }
  ReportMisplaced(model, targets, turned,
                  "the map turns its web without an offset: the deck's offset turns with it",
                  report);
}

void GiveOrientations(const std::vector<MapTarget>& targets, ImportModel& model,
                      ImportReport& report) {
  const std::vector<std::int32_t> givers =
      FindGivers(model, targets, &MapGroup::orientation, "orientation", BeamKind(model));
  if (givers.empty()) return;
  std::vector<Vector3> webs, orientations;  // [beams]
  for (const ImportBeam& beam : model.beams) {
    webs.push_back(BeamAxes(model, beam)[2]);
    orientations.push_back(beam.orientation);
  }
  for (std::size_t k = 0; k < givers.size(); ++k) {
    if (givers[k] < 0) continue;
    orientations[k] = targets[static_cast<std::size_t>(givers[k])].said.orientation->value.vector;
  }
  FindNormals(model, targets, givers, orientations);
  for (std::size_t k = 0; k < orientations.size(); ++k)
    model.beams[k].orientation = orientations[k];
  ReportTurnedOffsets(model, targets, givers, webs, report);
  KeepLineLoads(webs, model);
}

// What the deck's reader could not take over is made good where nothing is missing any more.
void ClearLacks(const std::vector<MapTarget>& targets, ImportModel& model) {
  for (const MapTarget& target : targets) {
    ImportGroup& group = model.groups[static_cast<std::size_t>(target.group)];
    const bool isComplete =
        std::all_of(group.shells.begin(), group.shells.end(),
                    [&](std::int32_t row) {
                      const ImportShell& shell = model.shells[static_cast<std::size_t>(row)];
                      return shell.thickness >= 0 && shell.material >= 0;
                    }) &&
        std::all_of(group.beams.begin(), group.beams.end(), [&](std::int32_t row) {
          const ImportBeam& beam = model.beams[static_cast<std::size_t>(row)];
          return beam.section >= 0 && beam.material >= 0;
        });
    if (isComplete) group.lacks.clear();
  }
}

void FlipGroups(const std::vector<MapTarget>& targets, ImportModel& model) {
  const std::vector<std::int32_t> givers =
      FindGivers(model, targets, &MapGroup::flip, "flip", ShellKind(model));
  if (givers.empty()) return;
  std::vector<char> isFlipped(model.shells.size(), 0);
  for (std::size_t k = 0; k < givers.size(); ++k) {
    const bool isSaid =
        givers[k] >= 0 && targets[static_cast<std::size_t>(givers[k])].said.flip->value;
    isFlipped[k] = isSaid ? 1 : 0;
  }
  FlipShells(isFlipped, model);
}

}  // namespace

void SkipGroups(const std::vector<MapTarget>& targets, ImportModel& model, ImportReport& report) {
  std::vector<char> isShellKept(model.shells.size(), 1), isBeamKept(model.beams.size(), 1);
  bool isAny = false;
  for (const MapTarget& target : targets) {
    if (!target.said.skip || !target.said.skip->value) continue;
    const ImportGroup& group = GroupOf(model, target);
    for (const std::int32_t row : group.shells) isShellKept[static_cast<std::size_t>(row)] = 0;
    for (const std::int32_t row : group.beams) isBeamKept[static_cast<std::size_t>(row)] = 0;
    ReportCard(NameGroup(group), Fate::NoEffect, "its elements are left out, as the map says",
               group.place, "", report, group.shells.size() + group.beams.size());
    isAny = true;
  }
  if (!isAny) return;
  const std::size_t loads = RemoveElements(isShellKept, isBeamKept, model);
  if (loads == 0) return;
  ReportCard("loads", Fate::Lost, "loads on elements that the map leaves out", {}, "", report,
             loads);
}

void GiveProperties(const MapFile& map, const std::vector<MapTarget>& targets, ImportModel& model,
                    ImportReport& report) {
  FlipGroups(targets, model);
  AddMaterials(map, model);
  GiveMaterials(targets, model);
  GiveThicknesses(targets, model);
  GiveSections(targets, model, report);
  GiveOrientations(targets, model, report);
  ClearLacks(targets, model);
}

}  // namespace kvx
