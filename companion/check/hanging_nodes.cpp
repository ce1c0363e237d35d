#include "check/hanging_nodes.h"

#include <algorithm>
#include <tuple>

#include "check/element_region.h"
#include "check/usable_elements.h"

namespace kvx {

using korvex::Section;

namespace {

// A good mesh has about ten nodes in the leaves round an element. Only elements that overlap
// everywhere have hundreds.
constexpr std::size_t NodesPerElement = 500;
constexpr std::size_t NodesAtLeast = 1000000;

// Where a patch stands twice, each node lies on one to four elements of the other.
constexpr std::size_t ElementsPerNode = 20;

// The nodes of elements that a finding names already.
std::vector<bool> FindNamedNodes(const CheckedModel& model) {
  std::vector<bool> isNamed(model.tables.Nodes.size(), false);
  VisitUsable(model, [&](Section section, std::int32_t row, const ElementNodes& element) {
    if (StateOf(model, section, row) == ElementState::Sound) return;
    for (std::size_t k = 0; k < element.count; ++k) {
      isNamed[static_cast<std::size_t>(element.nodes[k])] = true;
    }
  });
  return isNamed;
}

// The region of an element. False where it has none, and where a neighbour is named: if one node
// is misplaced, all elements round it are out of shape, but not each in a way that has a name.
bool FindRegion(const CheckedModel& model, const std::vector<bool>& isNamed,
                const ElementNodes& element, double tolerance, ElementRegion& region) {
  std::array<korvex::Vector3, 4> corners{};
  for (std::size_t k = 0; k < element.count; ++k) {
    if (isNamed[static_cast<std::size_t>(element.nodes[k])]) return false;
    if (!HasUsablePlace(model, element.nodes[k])) return false;
    corners[k] = PlaceOf(model.tables, element.nodes[k]);
  }
  MakeRegion(corners, element.count, tolerance, region);
  return true;
}

bool ComesBefore(const HangingNode& a, const HangingNode& b) {
  return std::tie(a.node, a.section, a.row) < std::tie(b.node, b.section, b.row);
}

bool LiesOnBeam(const std::vector<HangingNode>& hanging, std::int32_t node, std::int32_t beam) {
  return std::binary_search(hanging.begin(), hanging.end(),
                            HangingNode{node, Section::Beams, beam, 0}, ComesBefore);
}

// Removes the arms of spiders: beams from one node to several others, some of which lie behind one
// another. There a node on the axis of a longer arm is joined with the spider's middle by an arm of
// its own, and with no other node along the axis. hanging: sorted.
// Returns false, with `found` as it was, where that takes more than `most` comparisons.
bool RemoveSpiderArms(const CheckedModel& model, std::size_t most, HangingNodes& found) {
  std::vector<HangingNode>& hanging = found.all;
  // Beams from the node to an end of the beam on which it lies, and to other nodes on that beam.
  struct Links {
    int ends = 0, others = 0;
    std::int32_t end = -1;
  };
  std::vector<Links> links(hanging.size());
  std::size_t looked = 0;
  const auto count = [&](std::int32_t node, std::int32_t other) {
    const HangingNode from{node, Section::Beams, 0, 0};
    auto at = std::lower_bound(hanging.begin(), hanging.end(), from, ComesBefore);
    for (; at != hanging.end() && at->node == node && looked <= most; ++at) {
      ++looked;
      const std::int32_t* const ends = NodesOf(model.tables, Section::Beams, at->row).nodes;
      Links& here = links[static_cast<std::size_t>(at - hanging.begin())];
      if (other == ends[0] || other == ends[1]) {
        ++here.ends;
        here.end = other;
      } else if (LiesOnBeam(hanging, other, at->row)) {
        ++here.others;
      }
    }
  };
  VisitUsable(model, Section::Beams, [&](Section, std::int32_t, const ElementNodes& beam) {
    count(beam.nodes[0], beam.nodes[1]);
    count(beam.nodes[1], beam.nodes[0]);
  });
  if (looked > most) return false;
  std::size_t kept = 0;
  for (std::size_t k = 0; k < hanging.size(); ++k) {
    const bool isArm =
        hanging[k].section == Section::Beams && links[k].ends == 1 && links[k].others == 0;
    if (isArm) {
      found.spiderMiddles.push_back(links[k].end);
    } else {
      hanging[kept++] = hanging[k];
    }
  }
  hanging.resize(kept);
  std::vector<std::int32_t>& middles = found.spiderMiddles;
  std::sort(middles.begin(), middles.end());
  middles.erase(std::unique(middles.begin(), middles.end()), middles.end());
  return true;
}

}  // namespace

bool FindHangingNodes(const CheckedModel& model, const NodeTree& tree, double tolerance,
                      HangingNodes& found) {
  found = {};
  std::vector<HangingNode>& hanging = found.all;
  const std::vector<bool> isNamed = FindNamedNodes(model);
  std::size_t elements = 0, looked = 0;
  ElementRegion region;
  bool isComplete = true;
  VisitUsable(model, [&](Section section, std::int32_t row, const ElementNodes& element) {
    ++elements;
    if (!isComplete || !FindRegion(model, isNamed, element, tolerance, region)) return;
    VisitLeaves(
        tree, [&](const Box& box) { return MayMeet(region, box); },
        [&](const TreeItem& item) {
          ++looked;
          const std::int32_t* const end = element.nodes + element.count;
          if (std::find(element.nodes, end, item.node) != end) return;
          if (isNamed[static_cast<std::size_t>(item.node)]) return;
          const Touch touch = FindTouch(region, item.place);
          if (touch.touches) hanging.push_back({item.node, section, row, touch.edge});
        });
    isComplete = looked <= NodesAtLeast + NodesPerElement * elements &&
                 hanging.size() <= ElementsPerNode * tree.items.size();
  });
  std::sort(hanging.begin(), hanging.end(), ComesBefore);
  const std::size_t most = NodesAtLeast + NodesPerElement * elements;
  return RemoveSpiderArms(model, most, found) && isComplete;
}

}  // namespace kvx
