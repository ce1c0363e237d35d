#include "check/unjoined_places.h"

#include <algorithm>
#include <map>
#include <string>

#include "check/describe.h"
#include "check/place_words.h"
#include "check/usable_elements.h"
#include "skyline/disjoint_sets.h"

namespace kvx {

using korvex::Section;

namespace {

constexpr std::int32_t NotMarked = -1;

// The nodes that are coincident or hanging, numbered through.
struct MarkedNodes {
  std::vector<std::int32_t> nodes;    // [marked] ascending
  std::vector<std::int32_t> indexOf;  // [NPOIN] NotMarked: of no interest
  std::vector<bool> hangsOnShell;     // [marked]
  korvex::DisjointSets sets;          // of marked nodes that belong to one finding
};

// What one finding will name.
struct UnjoinedPlace {
  std::vector<std::int32_t> coincident, hanging;  // nodes, ascending
  std::vector<korvex::Vector3> places;            // of all nodes
  std::size_t pairs = 0;                          // places with coincident nodes
  std::size_t freeEdges = 0;                      // whose nodes hang on shells or are coincident
  std::size_t shells = 0;                         // all nodes of which are coincident
  std::size_t links = 0;                          // pairs of neighbouring places
  const HangingNode* example = nullptr;           // of the lowest hanging node
};

std::int32_t IndexOfNode(const MarkedNodes& marked, std::int32_t node) {
  return marked.indexOf[static_cast<std::size_t>(node)];
}

void MarkNodes(const CoincidentNodes& coincident, const std::vector<HangingNode>& hanging,
               MarkedNodes& marked) {
  const std::size_t nodeCount = coincident.leaderOf.size();
  marked.indexOf.assign(nodeCount, NotMarked);
  for (const HangingNode& at : hanging) marked.indexOf[static_cast<std::size_t>(at.node)] = 0;
  for (std::size_t node = 0; node < nodeCount; ++node) {
    if (coincident.leaderOf[node] < 0 && marked.indexOf[node] == NotMarked) continue;
    marked.indexOf[node] = static_cast<std::int32_t>(marked.nodes.size());
    marked.nodes.push_back(static_cast<std::int32_t>(node));
  }
  marked.hangsOnShell.assign(marked.nodes.size(), false);
  for (const HangingNode& at : hanging) {
    if (at.section == Section::Beams) continue;
    marked.hangsOnShell[static_cast<std::size_t>(IndexOfNode(marked, at.node))] = true;
  }
}

// Joins nodes at the same place, neighbours, and hanging nodes with those of their elements.
void JoinMarkedNodes(const CheckedModel& model, const CoincidentNodes& coincident,
                     const std::vector<HangingNode>& hanging, MarkedNodes& marked) {
  korvex::InitSets(marked.sets, static_cast<std::int32_t>(marked.nodes.size()));
  const auto join = [&](std::int32_t node, std::int32_t other) {
    const std::int32_t a = IndexOfNode(marked, node), b = IndexOfNode(marked, other);
    if (a != NotMarked && b != NotMarked) korvex::JoinSets(marked.sets, a, b);
  };
  for (const std::int32_t node : marked.nodes) {
    const std::int32_t leader = coincident.leaderOf[static_cast<std::size_t>(node)];
    if (leader >= 0) join(node, leader);
  }
  VisitUsable(model, [&](Section, std::int32_t, const ElementNodes& element) {
    for (std::size_t k = 0; k < element.count; ++k) {
      join(element.nodes[k], element.nodes[(k + 1) % element.count]);
    }
  });
  for (const HangingNode& at : hanging) {
    const ElementNodes element = NodesOf(model.tables, at.section, at.row);
    for (std::size_t k = 0; k < element.count; ++k) join(at.node, element.nodes[k]);
  }
  // Nodes on the axis of one beam.
  std::map<std::int32_t, std::int32_t> firstOnBeam;
  for (const HangingNode& at : hanging) {
    if (at.section == Section::Beams)
      join(at.node, firstOnBeam.emplace(at.row, at.node).first->second);
  }
}

UnjoinedPlace& PlaceOfNode(MarkedNodes& marked, std::int32_t node,
                           const std::vector<std::int32_t>& placeOfSet,
                           std::vector<UnjoinedPlace>& places) {
  const std::int32_t set = korvex::FindSet(marked.sets, IndexOfNode(marked, node));
  // cppcheck-suppress containerOutOfBounds  ; it does not see that the caller has filled `places`
  return places[static_cast<std::size_t>(placeOfSet[static_cast<std::size_t>(set)])];
}

// Counts the shells within a group, and its free edges.
void CountShellsAndEdges(const CheckedModel& model, const CoincidentNodes& coincident,
                         const EdgeTable& edges, const std::vector<std::int32_t>& placeOfSet,
                         MarkedNodes& marked, std::vector<UnjoinedPlace>& places) {
  const auto leaderOf = [&](std::int32_t node) {
    return coincident.leaderOf[static_cast<std::size_t>(node)];
  };
  for (const Section section : {Section::Shells4, Section::Shells3}) {
    VisitUsable(model, section, [&](Section, std::int32_t, const ElementNodes& element) {
      if (std::all_of(element.nodes, element.nodes + element.count,
                      [&](std::int32_t node) { return leaderOf(node) >= 0; })) {
        ++PlaceOfNode(marked, element.nodes[0], placeOfSet, places).shells;
      }
    });
  }
  const auto isOnShell = [&](std::int32_t node) {
    const std::int32_t index = IndexOfNode(marked, node);
    return index != NotMarked &&
           (leaderOf(node) >= 0 || marked.hangsOnShell[static_cast<std::size_t>(index)]);
  };
  std::vector<std::array<std::int32_t, 2>> links;
  for (const std::int32_t node : marked.nodes) {
    VisitEdgesOf(edges, node, [&](std::int32_t low, const ShellEdge* first, const ShellEdge* end) {
      if (end - first == 1 && isOnShell(low) && isOnShell(first->high)) {
        ++PlaceOfNode(marked, low, placeOfSet, places).freeEdges;
      }
      const std::int32_t a = leaderOf(low), b = leaderOf(first->high);
      if (a >= 0 && b >= 0 && a != b) links.push_back({std::min(a, b), std::max(a, b)});
    });
  }
  // Both sides of a seam have the link.
  std::sort(links.begin(), links.end());
  links.erase(std::unique(links.begin(), links.end()), links.end());
  for (const auto& link : links) ++PlaceOfNode(marked, link[0], placeOfSet, places).links;
}

// Collects the groups, in the order of their lowest nodes.
void CollectPlaces(const CheckedModel& model, const CoincidentNodes& coincident,
                   const std::vector<HangingNode>& hanging, const EdgeTable& edges,
                   MarkedNodes& marked, std::vector<UnjoinedPlace>& places) {
  std::vector<std::int32_t> placeOfSet(marked.nodes.size(), -1);
  for (std::size_t k = 0; k < marked.nodes.size(); ++k) {
    const std::int32_t node = marked.nodes[k];
    const auto set =
        static_cast<std::size_t>(korvex::FindSet(marked.sets, static_cast<std::int32_t>(k)));
    if (placeOfSet[set] < 0) {
      placeOfSet[set] = static_cast<std::int32_t>(places.size());
      places.emplace_back();
    }
    UnjoinedPlace& place = places[static_cast<std::size_t>(placeOfSet[set])];
    const std::int32_t leader = coincident.leaderOf[static_cast<std::size_t>(node)];
    (leader >= 0 ? place.coincident : place.hanging).push_back(node);
    place.pairs += leader == node ? 1 : 0;
    place.places.push_back(PlaceOf(model.tables, node));
  }
  for (const HangingNode& at : hanging) {
    UnjoinedPlace& place = PlaceOfNode(marked, at.node, placeOfSet, places);
    const bool isFirst = !place.hanging.empty() && place.hanging[0] == at.node;
    if (isFirst && place.example == nullptr) place.example = &at;
  }
  CountShellsAndEdges(model, coincident, edges, placeOfSet, marked, places);
}

// "nodes 5 and 17", "nodes 5, 17 and 20"; of many the first ones.
std::string NodeListText(const std::vector<std::int32_t>& nodes) {
  constexpr std::size_t Most = 8;
  std::string text = "nodes ";
  const std::size_t shown = std::min(nodes.size(), Most);
  for (std::size_t k = 0; k < shown; ++k) {
    const bool isLast = k + 1 == nodes.size();
    if (k > 0) text += isLast ? " and " : ", ";
    text += std::to_string(nodes[k]);
  }
  return shown < nodes.size() ? text + ", ..." : text;
}

std::string SeamSubject(const UnjoinedPlace& place) {
  if (place.coincident.size() == 2 * place.pairs) {
    return std::to_string(place.pairs) +
           (place.pairs == 1 ? " pair of coincident nodes " : " pairs of coincident nodes ");
  }
  return std::to_string(place.coincident.size()) + " nodes at " + std::to_string(place.pairs) +
         (place.pairs == 1 ? " place " : " places ");
}

Finding MakeSeam(const CheckedModel& model, const UnjoinedPlace& place, double tolerance) {
  Finding finding = MakeNodeFinding("K201", model, place.coincident[0]);
  // A patch of n x n places has 2 (n - 1)^2 shells, a seam none.
  const bool isPatch = place.shells > 0 && 2 * place.shells >= place.pairs;
  // n places on a path have n - 1 links, on a closed one n, on a net more.
  const PlaceShape shape = isPatch || place.links > place.pairs ? PlaceShape::Patch
                           : place.links == place.pairs         ? PlaceShape::Closed
                                                                : PlaceShape::Line;
  finding.message = SeamSubject(place) + DescribePlaces(place.places, shape, tolerance) +
                    (isPatch ? ": does it stand twice?" : ": an open seam?") +
                    " The elements on its two sides are not connected there.";
  if (!place.hanging.empty()) {
    finding.message += " " + std::to_string(place.hanging.size()) +
                       " more nodes of one side lie on elements of the other.";
  }
  finding.remedy = "Merge each pair into one node";
  finding.remedy += isPatch ? ", or remove one of the two patches." : ".";
  if (!place.hanging.empty()) finding.remedy += " Give both sides the same division.";
  return finding;
}

Finding MakePair(const CheckedModel& model, const UnjoinedPlace& place) {
  const std::int32_t first = place.coincident[0];
  Finding finding = MakeNodeFinding("K202", model, first);
  finding.message = NodeListText(place.coincident) + " at " +
                    PointText(PlaceOf(model.tables, first)) +
                    ": they lie at the same place; their elements are not connected there.";
  finding.remedy = "Merge them: write " + std::to_string(first) + " in place of " +
                   (place.coincident.size() == 2 ? std::to_string(place.coincident[1])
                                                 : std::string("the others")) +
                   " in all rows.";
  return finding;
}

// "on the edge between nodes 5 and 6 of four-node shell 3 at (..)"
std::string DescribeTouch(const CheckedModel& model, const HangingNode& at) {
  const std::string element = DescribeElement(model, at.section, at.row);
  if (at.section == Section::Beams) return "on the axis of " + element;
  if (at.edge < 0) return "inside " + element;
  const ElementNodes nodes = NodesOf(model.tables, at.section, at.row);
  const auto k = static_cast<std::size_t>(at.edge);
  return "on the edge between nodes " + std::to_string(nodes.nodes[k]) + " and " +
         std::to_string(nodes.nodes[(k + 1) % nodes.count]) + " of " + element;
}

// " Nodes coincide at 2 of these places."
std::string PairsText(const UnjoinedPlace& place) {
  if (place.pairs == 0) return "";
  return " Nodes coincide at " + std::to_string(place.pairs) + " of these places.";
}

Finding MakeFreeEdges(const CheckedModel& model, const UnjoinedPlace& place, double tolerance) {
  Finding finding = MakeNodeFinding("K204", model, place.hanging[0]);
  const bool isOne = place.freeEdges == 1;
  finding.message =
      std::to_string(place.freeEdges) + (isOne ? " free shell edge " : " free shell edges ") +
      DescribePlaces(place.places, PlaceShape::Line, tolerance) +
      (isOne ? ": it lies" : ": they lie") +
      " on other shells without common nodes, and nothing connects them; " +
      DescribeNode(model, place.hanging[0]) + " lies " + DescribeTouch(model, *place.example) + ".";
  finding.remedy = "Divide both sides alike and let them use the same nodes.";
  return finding;
}

Finding MakeHanging(const CheckedModel& model, const UnjoinedPlace& place, double tolerance) {
  const HangingNode& at = *place.example;
  Finding finding = MakeNodeFinding("K205", model, at.node);
  const std::string touch = DescribeTouch(model, at);
  const bool isOne = place.hanging.size() == 1;
  if (isOne) {
    finding.message = DescribeNode(model, at.node) + ": it lies " + touch +
                      " and is not one of its nodes; the two are not connected there.";
  } else {
    finding.message = std::to_string(place.hanging.size()) + " nodes " +
                      DescribePlaces(place.places, PlaceShape::Line, tolerance) +
                      ": they lie on elements that they are not nodes of, and are not connected "
                      "with them; node " +
                      std::to_string(at.node) + " lies " + touch + "." + PairsText(place);
  }
  finding.remedy =
      at.section == Section::Beams
          ? std::string("Divide the beam at ") + (isOne ? "the node" : "these nodes")
          : std::string("Divide the shells so that ") +
                (isOne ? "the node is one of their corners" : "these nodes are their corners");
  finding.remedy += isOne ? ", or move the node away if the two shall not meet."
                          : ", or move them away if they shall not meet.";
  return finding;
}

Finding MakeUnjoined(const CheckedModel& model, const UnjoinedPlace& place, double tolerance) {
  if (place.pairs > 0 && place.pairs >= place.hanging.size()) {
    const bool isPair = place.pairs == 1 && place.hanging.empty();
    return isPair ? MakePair(model, place) : MakeSeam(model, place, tolerance);
  }
  return place.freeEdges > 0 ? MakeFreeEdges(model, place, tolerance)
                             : MakeHanging(model, place, tolerance);
}

}  // namespace

void NameUnjoinedPlaces(const CheckedModel& model, const CoincidentNodes& coincident,
                        const std::vector<HangingNode>& hanging, const EdgeTable& edges,
                        double tolerance, FindingList& findings) {
  MarkedNodes marked;
  MarkNodes(coincident, hanging, marked);
  if (marked.nodes.empty()) return;
  JoinMarkedNodes(model, coincident, hanging, marked);
  std::vector<UnjoinedPlace> places;
  CollectPlaces(model, coincident, hanging, edges, marked, places);
  for (const UnjoinedPlace& place : places) {
    Finding finding = MakeUnjoined(model, place, tolerance);
    finding.nodes = place.coincident;
    finding.nodes.insert(finding.nodes.end(), place.hanging.begin(), place.hanging.end());
    std::sort(finding.nodes.begin(), finding.nodes.end());
    finding.rows = finding.nodes;
    AddFinding(std::move(finding), findings);
  }
}

}  // namespace kvx
