#include "check/check_far_nodes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>

#include "check/check_shells.h"
#include "check/describe.h"
#include "check/table_rows.h"

namespace kvx {

using korvex::Section;
using korvex::Vector3;

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

struct Box {
  Vector3 low{Infinity, Infinity, Infinity};
  Vector3 high{-Infinity, -Infinity, -Infinity};
};

void Include(const Vector3& point, Box& box) {
  for (std::size_t i = 0; i < 3; ++i) {
    box.low[i] = std::min(box.low[i], point[i]);
    box.high[i] = std::max(box.high[i], point[i]);
  }
}

double SizeOf(const Box& box) { return korvex::Length(korvex::Subtract(box.high, box.low)); }

double DistanceFrom(const Vector3& point, const Box& box) {
  Vector3 off{};
  for (std::size_t i = 0; i < 3; ++i) {
    off[i] = std::max({0.0, box.low[i] - point[i], point[i] - box.high[i]});
  }
  return korvex::Length(off);
}

bool IsFar(const Vector3& point, const Box& others, double ratio) {
  const double size = SizeOf(others);
  return size > 0.0 && DistanceFrom(point, others) > ratio * size;
}

// A far node, and what it is far from.
struct FarNode {
  std::int32_t node = 0;
  double extent = 0.0;  // of the others
  const char* others = "";
  bool breaksShell = false;  // one of its shells is one that the solver cannot take
};

void NameFar(const FarNode& far, CheckedModel& model, FindingList& list) {
  Finding finding = MakeNodeFinding("K603", model, far.node);
  if (far.breaksShell) finding.severity = Severity::Error;
  finding.message = DescribeNode(model, far.node) + ": is far away from " + far.others +
                    ", whose extent is " + NumberText(far.extent) + "; its elements are that long.";
  finding.remedy = "Mend the coordinate: a digit too many, or another unit?";
  AddFinding(std::move(finding), list);
  MarkNamed(model, Section::Nodes, far.node);
}

template <typename Visit>
void ForSoundElements(const CheckedModel& model, std::initializer_list<Section> sections,
                      Visit visit) {
  for (const Section section : sections) {
    for (std::int32_t row = 0; row < CountRows(model.tables, section); ++row) {
      if (StateOf(model, section, row) != ElementState::Sound) continue;
      visit(section, row, NodesOf(model.tables, section, row));
    }
  }
}

double Distance(const CheckedModel& model, const ElementNodes& shell, std::size_t k,
                std::size_t j) {
  return korvex::Length(korvex::Subtract(PlaceOf(model.tables, shell.nodes[k % shell.count]),
                                         PlaceOf(model.tables, shell.nodes[j % shell.count])));
}

// The shorter of a corner's edges over the longest edge between the other corners.
double RatioOf(const CheckedModel& model, const ElementNodes& shell, std::size_t k) {
  const std::size_t n = shell.count;
  double others = 0.0;
  for (std::size_t j = 1; j + 1 < n; ++j) {
    others = std::max(others, Distance(model, shell, k + j, k + j + 1));
  }
  return std::min(Distance(model, shell, k, k + 1), Distance(model, shell, k, k + n - 1)) / others;
}

// Of each node the smallest ratio of its shells; negative for nodes of no shell.
std::vector<float> SmallestRatios(const CheckedModel& model) {
  std::vector<float> ratios(model.tables.Nodes.size(), -1.0F);
  ForSoundElements(model, {Section::Shells4, Section::Shells3},
                   [&](Section, std::int32_t, const ElementNodes& shell) {
                     for (std::size_t k = 0; k < shell.count; ++k) {
                       float& ratio = ratios[static_cast<std::size_t>(shell.nodes[k])];
                       const auto here = static_cast<float>(RatioOf(model, shell, k));
                       if (ratio < 0.0F || here < ratio) ratio = here;
                     }
                   });
  return ratios;
}

bool MayBeFar(const std::vector<float>& ratios, std::int32_t node) {
  return ratios[static_cast<std::size_t>(node)] > FarRatio;
}

// Finds nodes of shells that stand off the box of their neighbours.
void FindFarShellNodes(const std::vector<float>& ratios, const CheckedModel& model,
                       std::vector<FarNode>& far) {
  std::unordered_map<std::int32_t, Box> neighbours;  // of the few nodes that may be far
  double longest = 0.0;                              // edge of the elements without such nodes
  ForSoundElements(
      model, {Section::Shells4, Section::Shells3, Section::Beams},
      [&](Section section, std::int32_t, const ElementNodes& element) {
        const bool isUsual = std::none_of(element.nodes, element.nodes + element.count,
                                          [&](auto node) { return MayBeFar(ratios, node); });
        for (std::size_t k = 0; k < element.count; ++k) {
          if (isUsual) longest = std::max(longest, Distance(model, element, k, k + 1));
          if (section == Section::Beams || !MayBeFar(ratios, element.nodes[k])) continue;
          for (std::size_t j = 0; j < element.count; ++j) {
            if (j != k)
              Include(PlaceOf(model.tables, element.nodes[j]), neighbours[element.nodes[k]]);
          }
        }
      });
  for (const auto& [node, box] : neighbours) {
    const Vector3 place = PlaceOf(model.tables, node);
    if (!IsFar(place, box, FarRatio) || DistanceFrom(place, box) < longest) continue;
    far.push_back({node, SizeOf(box), "its neighbours"});
  }
}

// Whether all elements at the node are much longer than all others.
bool HasLongElementsOnly(const CheckedModel& model, std::int32_t node) {
  double shortest = Infinity, longest = 0.0;
  ForSoundElements(model, {Section::Shells4, Section::Shells3, Section::Beams},
                   [&](Section, std::int32_t, const ElementNodes& element) {
                     const auto* const end = element.nodes + element.count;
                     const bool isHere = std::find(element.nodes, end, node) != end;
                     for (std::size_t k = 0; k < element.count; ++k) {
                       const double length = Distance(model, element, k, k + 1);
                       if (isHere) shortest = std::min(shortest, length);
                       if (!isHere) longest = std::max(longest, length);
                     }
                   });
  return shortest > LongRatio * longest;
}

// Finds a node of beams alone that stands off the box of all other nodes: it is the outermost one
// along an axis.
void FindFarBeamNodes(const std::vector<float>& ratios, const CheckedModel& model,
                      std::vector<FarNode>& far) {
  std::array<std::int32_t, 6> outermost{-1, -1, -1, -1, -1, -1};
  std::vector<bool> isUsed(model.tables.Nodes.size());
  const auto isFarther = [&](std::int32_t node, std::size_t side) {
    const double x = PlaceOf(model.tables, node)[side / 2];
    const std::int32_t now = outermost[side];
    if (now < 0) return true;
    const double limit = PlaceOf(model.tables, now)[side / 2];
    return side % 2 == 0 ? x < limit : x > limit;
  };
  std::size_t count = 0;
  ForSoundElements(model, {Section::Shells4, Section::Shells3, Section::Beams},
                   [&](Section, std::int32_t, const ElementNodes& element) {
                     for (std::size_t k = 0; k < element.count; ++k) {
                       const std::int32_t node = element.nodes[k];
                       if (isUsed[static_cast<std::size_t>(node)]) continue;
                       isUsed[static_cast<std::size_t>(node)] = true;
                       ++count;
                       for (std::size_t side = 0; side < 6; ++side) {
                         if (isFarther(node, side)) outermost[side] = node;
                       }
                     }
                   });
  if (count <= FewestNodes) return;
  std::sort(outermost.begin(), outermost.end());
  for (std::size_t k = 0; k < 6; ++k) {
    const std::int32_t node = outermost[k];
    if (k > 0 && outermost[k - 1] == node) continue;
    if (ratios[static_cast<std::size_t>(node)] >= 0.0F) continue;
    Box others;
    for (std::size_t other = 0; other < isUsed.size(); ++other) {
      const auto number = static_cast<std::int32_t>(other);
      if (isUsed[other] && number != node) Include(PlaceOf(model.tables, number), others);
    }
    if (IsFar(PlaceOf(model.tables, node), others, BeamFarRatio) &&
        HasLongElementsOnly(model, node)) {
      far.push_back({node, SizeOf(others), "all others"});
    }
  }
}

// Whether the solver cannot take the element as it is: what would be an error of its own.
bool IsUnfit(const CheckedModel& model, Section section, std::int32_t row) {
  if (section == Section::Beams) return false;
  const ShapeFault fault = JudgeShell(model, section, row).fault;
  return fault != ShapeFault::None && fault < ShapeFault::Warped;
}

// Breaks the elements of far nodes. far: sorted by node.
void BreakElements(CheckedModel& model, std::vector<FarNode>& far) {
  const auto isBefore = [](const FarNode& a, std::int32_t node) { return a.node < node; };
  ForSoundElements(model, {Section::Shells4, Section::Shells3, Section::Beams},
                   [&](Section section, std::int32_t row, const ElementNodes& element) {
                     for (std::size_t k = 0; k < element.count; ++k) {
                       const auto at =
                           std::lower_bound(far.begin(), far.end(), element.nodes[k], isBefore);
                       if (at == far.end() || at->node != element.nodes[k]) continue;
                       StateOf(model, section, row) = ElementState::Broken;
                       at->breaksShell = at->breaksShell || IsUnfit(model, section, row);
                     }
                   });
}

}  // namespace

void CheckFarNodes(CheckedModel& model, FindingList& list) {
  const std::vector<float> ratios = SmallestRatios(model);
  std::vector<FarNode> far;
  FindFarShellNodes(ratios, model, far);
  FindFarBeamNodes(ratios, model, far);
  if (far.empty()) return;
  std::sort(far.begin(), far.end(),
            [](const FarNode& a, const FarNode& b) { return a.node < b.node; });
  BreakElements(model, far);
  for (const FarNode& node : far) NameFar(node, model, list);
}

}  // namespace kvx
