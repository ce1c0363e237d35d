#include "check/coincident_nodes.h"

#include <algorithm>

#include "check/usable_elements.h"
#include "skyline/disjoint_sets.h"

namespace kvx {

namespace {

// Gathers the nodes; returns whether any two are at the same place.
bool GatherNodes(const NodeTree& tree, double tolerance, std::vector<std::int32_t>& leaderOf) {
  bool any = false;
  std::vector<std::int32_t> here;
  for (const TreeItem& item : tree.items) {
    if (leaderOf[static_cast<std::size_t>(item.node)] >= 0) continue;
    here.clear();
    VisitNear(tree, item.place, tolerance, [&](const TreeItem& other) {
      if (leaderOf[static_cast<std::size_t>(other.node)] < 0) here.push_back(other.node);
    });
    if (here.size() < 2) continue;
    const std::int32_t leader = *std::min_element(here.begin(), here.end());
    for (const std::int32_t node : here) leaderOf[static_cast<std::size_t>(node)] = leader;
    any = true;
  }
  return any;
}

// Joins nodes at the same place that are nodes of one element.
void JoinByElements(const CheckedModel& model, const std::vector<std::int32_t>& leaderOf,
                    korvex::DisjointSets& sets) {
  VisitUsable(model, [&](korvex::Section, std::int32_t, const ElementNodes& element) {
    for (std::size_t k = 0; k < element.count; ++k) {
      const std::int32_t leader = leaderOf[static_cast<std::size_t>(element.nodes[k])];
      if (leader < 0) continue;
      for (std::size_t l = 0; l < k; ++l) {
        if (leaderOf[static_cast<std::size_t>(element.nodes[l])] == leader) {
          korvex::JoinSets(sets, element.nodes[k], element.nodes[l]);
        }
      }
    }
  });
}

}  // namespace

void FindCoincidentNodes(const CheckedModel& model, const NodeTree& tree, double tolerance,
                         CoincidentNodes& coincident) {
  std::vector<std::int32_t>& leaderOf = coincident.leaderOf;
  const std::size_t nodeCount = model.tables.Nodes.size();
  leaderOf.assign(nodeCount, -1);
  if (!GatherNodes(tree, tolerance, leaderOf)) return;

  korvex::DisjointSets sets;
  korvex::InitSets(sets, static_cast<std::int32_t>(nodeCount));
  JoinByElements(model, leaderOf, sets);
  // A place is named if not all of its nodes are joined with the leader.
  std::vector<bool> isNamed(nodeCount, false);
  for (std::size_t node = 0; node < nodeCount; ++node) {
    if (leaderOf[node] < 0) continue;
    const std::int32_t leader = leaderOf[node];
    if (korvex::FindSet(sets, static_cast<std::int32_t>(node)) != korvex::FindSet(sets, leader)) {
      isNamed[static_cast<std::size_t>(leader)] = true;
    }
  }
  for (std::int32_t& leader : leaderOf) {
    if (leader >= 0 && !isNamed[static_cast<std::size_t>(leader)]) leader = -1;
  }
}

void LeaveOutPlaces(const std::vector<std::int32_t>& nodes, CoincidentNodes& coincident) {
  std::vector<std::int32_t> leaders;
  for (const std::int32_t node : nodes) {
    const std::int32_t leader = coincident.leaderOf[static_cast<std::size_t>(node)];
    if (leader >= 0) leaders.push_back(leader);
  }
  if (leaders.empty()) return;
  std::sort(leaders.begin(), leaders.end());
  for (std::int32_t& leader : coincident.leaderOf) {
    if (std::binary_search(leaders.begin(), leaders.end(), leader)) leader = -1;
  }
}

}  // namespace kvx
