#include "mesh/merge_nodes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "mesh/element_names.h"
#include "mesh/equivalent_loads.h"
#include "mesh/nearby_nodes.h"
#include "mesh/remove_elements.h"

namespace kvx {

namespace {

// What a shell keeps of its corners: 4, 3, or 0 where it has no extent.
struct KeptCorners {
  std::size_t count = 0;
  std::array<std::size_t, 4> corners{};
};

KeptCorners KeepCorners(const ImportShell& shell, const std::vector<std::int32_t>& nearby) {
  KeptCorners kept;
  const std::size_t corners = CornersOf(shell);
  // Without all its nodes it is refused later.
  if (std::any_of(shell.nodes.begin(), shell.nodes.begin() + 3, [](auto n) { return n < 0; })) {
    return {corners, {0, 1, 2, 3}};
  }
  const auto nodeAt = [&](std::size_t k) {
    return nearby[static_cast<std::size_t>(shell.nodes[k])];
  };
  // Of neighbours that are one, the second goes; of the last and the first, the last.
  for (std::size_t k = 0; k < corners; ++k) {
    const bool isGone = k > 0 && nodeAt(k) == nodeAt(k - 1);
    const bool isFirst = k + 1 == corners && nodeAt(k) == nodeAt(0);
    if (!isGone && !isFirst) kept.corners[kept.count++] = k;
  }
  // Opposite corners that are one leave no area.
  const bool isFolded = corners == 4 && (nodeAt(0) == nodeAt(2) || nodeAt(1) == nodeAt(3));
  if (kept.count < 3 || isFolded) kept.count = 0;
  return kept;
}

// Moves the pressures of quadrilaterals that become triangles to the corners that stay.
// kept: [shells].
void MovePressures(const std::vector<KeptCorners>& kept, ImportModel& model) {
  for (ImportCase& loads : model.cases) {
    for (ImportPressure& each : loads.pressures) {
      const KeptCorners& corners = kept[static_cast<std::size_t>(each.shell)];
      const ImportShell& shell = model.shells[static_cast<std::size_t>(each.shell)];
      if (corners.count != 3 || CornersOf(shell) != 4) continue;
      const double q4 = PressureAtCorner4(model, each);
      const std::array<double, 4> q{each.q[0], each.q[1], each.q[2], q4};
      for (std::size_t k = 0; k < 3; ++k) each.q[k] = q[corners.corners[k]];
    }
  }
}

// Turns quadrilaterals into triangles and takes collapsed elements out. Nodes are still the old
// ones, as are the geometry and the rows of pressures before the call.
void CollapseElements(const std::vector<std::int32_t>& nearby, ImportModel& model,
                      ImportReport& report, MergedNodes& result) {
  constexpr const char* Reason =
      "it has no extent once its nodes are merged, and is left out with its loads";
  std::vector<KeptCorners> kept;
  std::vector<char> isShellKept(model.shells.size(), 1), isBeamKept(model.beams.size(), 1);
  kept.reserve(model.shells.size());
  for (const ImportShell& shell : model.shells) kept.push_back(KeepCorners(shell, nearby));
  MovePressures(kept, model);
  const auto collapse = [&](std::int32_t type, std::int64_t number) {
    const std::string name = NameElement(model, type, number);
    ReportCard(name.substr(0, name.find(' ')), Fate::Lost, Reason, {}, name, report);
    ++result.collapsed;
  };
  for (std::size_t k = 0; k < model.shells.size(); ++k) {
    ImportShell& shell = model.shells[k];
    isShellKept[k] = kept[k].count > 0 ? 1 : 0;
    if (isShellKept[k] == 0) collapse(shell.type, shell.number);
    if (kept[k].count != 3 || CornersOf(shell) == 3) continue;
    const auto nodes = shell.nodes;
    for (std::size_t c = 0; c < 3; ++c) shell.nodes[c] = nodes[kept[k].corners[c]];
    shell.nodes[3] = -1;
    ++result.triangles;
  }
  for (std::size_t k = 0; k < model.beams.size(); ++k) {
    const auto [first, second] = model.beams[k].nodes;
    if (first < 0 || second < 0) continue;
    if (nearby[static_cast<std::size_t>(first)] != nearby[static_cast<std::size_t>(second)]) {
      continue;
    }
    isBeamKept[k] = 0;
    collapse(model.beams[k].type, model.beams[k].number);
  }
  if (result.collapsed > 0) RemoveElements(isShellKept, isBeamKept, model);
}

// places: [old nodes] the new row of the node that a node became.
void MoveReferences(const std::vector<std::int32_t>& places, ImportModel& model) {
  const auto move = [&](std::int32_t& node) {
    if (node >= 0) node = places[static_cast<std::size_t>(node)];
  };
  for (ImportShell& shell : model.shells)
    std::for_each(shell.nodes.begin(), shell.nodes.end(), move);
  for (ImportBeam& beam : model.beams) std::for_each(beam.nodes.begin(), beam.nodes.end(), move);
  for (ImportGroup& group : model.groups) {
    std::for_each(group.nodes.begin(), group.nodes.end(), move);
    std::sort(group.nodes.begin(), group.nodes.end());
    group.nodes.erase(std::unique(group.nodes.begin(), group.nodes.end()), group.nodes.end());
  }
  for (SupportSet& set : model.supports) {
    for (korvex::NodalRestraint& each : set.restraints) move(each.node);
  }
  for (ImportCase& loads : model.cases) {
    for (korvex::NodalForce& each : loads.forces) move(each.node);
    for (PrescribedDof& each : loads.prescribed) move(each.node);
  }
}

}  // namespace

MergedNodes MergeNodes(double length, ImportModel& model, ImportReport& report) {
  MergedNodes result;
  const std::vector<std::int32_t> nearby = FindNearby(model.nodes, length);
  std::vector<std::int32_t> places(nearby.size());
  std::int32_t staying = 0;
  for (std::size_t k = 0; k < nearby.size(); ++k) {
    const auto first = static_cast<std::size_t>(nearby[k]);
    places[k] = first == k ? staying++ : places[first];
  }
  result.merged = nearby.size() - static_cast<std::size_t>(staying);
  if (result.merged == 0) return result;
  CollapseElements(nearby, model, report, result);
  MoveReferences(places, model);
  for (std::size_t k = 0; k < nearby.size(); ++k) {
    if (static_cast<std::size_t>(nearby[k]) != k) continue;
    model.nodes[static_cast<std::size_t>(places[k])] = model.nodes[k];
    model.nodeNumbers[static_cast<std::size_t>(places[k])] = model.nodeNumbers[k];
  }
  model.nodes.resize(static_cast<std::size_t>(staying));
  model.nodeNumbers.resize(static_cast<std::size_t>(staying));
  return result;
}

}  // namespace kvx
