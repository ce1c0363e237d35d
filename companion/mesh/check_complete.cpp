#include "mesh/check_complete.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/case_supports.h"
#include "mesh/element_names.h"
#include "mesh/equivalent_loads.h"

namespace kvx {

namespace {

enum class Gap { Node, Thickness, Section, Material, Orientation, Parallel };
constexpr std::size_t GapCount = 6;
constexpr std::array<std::string_view, GapCount> GapReasons{
    "an element has no node where it needs one",
    "there is no thickness",
    "there is no section",
    "there is no material",
    "there is no orientation of the web",
    "the orientation of the web is parallel to the beam's axis",
};

// What elements of a group lack: how many of them, and the first.
struct GapCounts {
  std::array<std::size_t, GapCount> counts{};
  std::array<std::int32_t, GapCount> types{};
  std::array<std::int64_t, GapCount> numbers{};
};

// The gaps of all elements by group; the last entry is of the elements of no group.
struct GapTable {
  std::vector<std::int32_t> shellGroups, beamGroups;  // [shells], [beams]; -1: none
  std::vector<GapCounts> byGroup;                     // [groups + 1]
};

// The group that answers for an element: the first that says what the deck lacks, else the first.
void TakeGroup(const ImportModel& model, std::size_t group, const std::vector<std::int32_t>& rows,
               std::vector<std::int32_t>& groups) {
  for (const std::int32_t row : rows) {
    std::int32_t& taken = groups[static_cast<std::size_t>(row)];
    const bool isBetter = taken >= 0 && !model.groups[group].lacks.empty() &&
                          model.groups[static_cast<std::size_t>(taken)].lacks.empty();
    if (taken < 0 || isBetter) taken = static_cast<std::int32_t>(group);
  }
}

void FindGroups(const ImportModel& model, GapTable& gaps) {
  gaps.shellGroups.assign(model.shells.size(), -1);
  gaps.beamGroups.assign(model.beams.size(), -1);
  gaps.byGroup.resize(model.groups.size() + 1);
  for (std::size_t k = 0; k < model.groups.size(); ++k) {
    TakeGroup(model, k, model.groups[k].shells, gaps.shellGroups);
    TakeGroup(model, k, model.groups[k].beams, gaps.beamGroups);
  }
}

// element: an ImportShell or ImportBeam.
template <typename Element>
void CountGap(std::int32_t group, Gap gap, const Element& element, GapTable& gaps) {
  GapCounts& counts =
      group < 0 ? gaps.byGroup.back() : gaps.byGroup[static_cast<std::size_t>(group)];
  const auto k = static_cast<std::size_t>(gap);
  if (counts.counts[k]++ > 0) return;
  counts.types[k] = element.type;
  counts.numbers[k] = element.number;
}

void CountShellGaps(const ImportModel& model, GapTable& gaps) {
  for (std::size_t k = 0; k < model.shells.size(); ++k) {
    const ImportShell& shell = model.shells[k];
    const auto count = [&](Gap gap) { CountGap(gaps.shellGroups[k], gap, shell, gaps); };
    if (std::any_of(shell.nodes.begin(), shell.nodes.begin() + 3, [](auto n) { return n < 0; })) {
      count(Gap::Node);
    }
    if (shell.thickness < 0) count(Gap::Thickness);
    if (shell.material < 0) count(Gap::Material);
  }
}

// A tube is the same all round.
bool NeedsOrientation(const ImportModel& model, const ImportBeam& beam) {
  if (beam.section < 0) return true;
  const ImportSection& section = model.sections[static_cast<std::size_t>(beam.section)];
  return section.type != korvex::BeamSecTypeC || beam.BeamSecOz != 0.0;
}

void CountBeamGaps(const ImportModel& model, GapTable& gaps) {
  for (std::size_t k = 0; k < model.beams.size(); ++k) {
    const ImportBeam& beam = model.beams[k];
    const auto count = [&](Gap gap) { CountGap(gaps.beamGroups[k], gap, beam, gaps); };
    if (beam.section < 0) count(Gap::Section);
    if (beam.material < 0) count(Gap::Material);
    if (beam.nodes[0] < 0 || beam.nodes[1] < 0) {
      count(Gap::Node);
      continue;
    }
    if (!NeedsOrientation(model, beam)) continue;
    const auto [x, y, z] = BeamAxes(model, beam);
    if (korvex::Length(beam.orientation) == 0.0) {
      count(Gap::Orientation);
    } else if (korvex::Length(x) > 0.0 && korvex::Length(z) == 0.0) {
      count(Gap::Parallel);
    }
  }
}

// What the deck has in place of what is missing, where its reader said so, stands for a missing
// thickness or section, and then for the material, too: such a property has no material to name.
std::string ReasonOf(Gap gap, const std::string& lacks) {
  std::string reason(GapReasons[static_cast<std::size_t>(gap)]);
  if (lacks.empty()) return reason;
  if (gap == Gap::Thickness || gap == Gap::Section) return lacks;
  return gap == Gap::Material ? reason + " (" + lacks + ')' : reason;
}

// Returns whether a map file could fill one of them: it names groups.
bool ReportGaps(const ImportModel& model, const GapTable& gaps, ImportReport& report) {
  bool canMapHelp = false;
  const std::string hint = model.format.substr(0, 4) == "gmsh"
                               ? "; a map file gives it (--map), --map-template writes one"
                               : "";
  for (std::size_t k = 0; k < gaps.byGroup.size(); ++k) {
    const bool isGroup = k < model.groups.size();
    const std::string card = isGroup ? NameGroup(model.groups[k]) : "elements of no group";
    const SourcePlace place = isGroup ? model.groups[k].place : SourcePlace{};
    const std::string lacks = isGroup ? model.groups[k].lacks : "";
    const GapCounts& counts = gaps.byGroup[k];
    bool isExplained = false;
    for (std::size_t gap = 0; gap < GapCount; ++gap) {
      if (counts.counts[gap] == 0) continue;
      canMapHelp = canMapHelp || (isGroup && static_cast<Gap>(gap) != Gap::Node);
      const std::string reason = ReasonOf(static_cast<Gap>(gap), lacks);
      if (isExplained && static_cast<Gap>(gap) == Gap::Material) continue;
      isExplained = isExplained || (!lacks.empty() && reason == lacks);
      ReportCard(card, Fate::Refused, reason + hint, place,
                 NameElement(model, counts.types[gap], counts.numbers[gap]), report,
                 counts.counts[gap]);
    }
  }
  return canMapHelp;
}

// The restraints of each set that a case asks for, joined once.
using HeldBySet = std::map<std::int32_t, HeldNodes>;

void CheckSupports(const ImportModel& model, const HeldBySet& held, ImportReport& report) {
  if (model.cases.empty() && model.supports.size() > 1) {
    ReportCard(model.supports[1].name, Fate::Refused,
               "there are several sets of supports, and no case says which one holds", {}, "",
               report);
  }
  const std::int32_t first = FindSupports(model);
  for (const ImportCase& each : model.cases) {
    if (!HasLoads(each) || each.supports == first) continue;
    if (held.at(each.supports) == held.at(first)) continue;
    ReportCard(NameCase(each), Fate::Refused,
               "its supports differ from those of the first case, and a model has one set; "
               "--case NAME takes one case alone",
               each.place, "", report);
  }
}

void CheckPrescribed(const ImportModel& model, const HeldBySet& held, ImportReport& report) {
  for (const ImportCase& each : model.cases) {
    std::vector<PrescribedDof> rows = each.prescribed;
    std::stable_sort(rows.begin(), rows.end(), [](const PrescribedDof& a, const PrescribedDof& b) {
      return a.node != b.node ? a.node < b.node : a.dof < b.dof;
    });
    for (std::size_t k = 0; k < rows.size(); ++k) {
      const PrescribedDof& row = rows[k];
      if ((FindHeld(held.at(each.supports), row.node) >> row.dof & 1U) == 0) {
        ReportCard(NameCase(each), Fate::Refused,
                   "a displacement is prescribed where there is no support", each.place,
                   NameNode(model, row.node), report);
      }
      if (k == 0 || rows[k - 1].node != row.node || rows[k - 1].dof != row.dof) continue;
      if (rows[k - 1].value == row.value) continue;
      ReportCard(NameCase(each), Fate::Refused,
                 "two different displacements are prescribed for the same node and direction",
                 each.place, NameNode(model, row.node), report);
    }
  }
}

}  // namespace

bool CheckComplete(const ImportModel& model, ImportReport& report) {
  if (model.shells.empty() && model.beams.empty()) {
    ReportCard("elements", Fate::Refused, "there are no shells and no beams", {}, "", report);
  }
  GapTable gaps;
  FindGroups(model, gaps);
  CountShellGaps(model, gaps);
  CountBeamGaps(model, gaps);
  const bool canMapHelp = ReportGaps(model, gaps, report);
  HeldBySet held;
  held.emplace(FindSupports(model), HeldNodes());
  for (const ImportCase& each : model.cases) held.emplace(each.supports, HeldNodes());
  for (auto& [supports, nodes] : held) nodes = JoinRestraints(model, supports);
  CheckSupports(model, held, report);
  CheckPrescribed(model, held, report);
  return canMapHelp;
}

}  // namespace kvx
