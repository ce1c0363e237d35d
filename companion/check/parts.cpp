#include "check/parts.h"

#include "check/usable_elements.h"
#include "skyline/disjoint_sets.h"

namespace kvx {

void FindParts(const CheckedModel& model, Parts& parts) {
  const std::size_t nodeCount = model.tables.Nodes.size();
  korvex::DisjointSets sets;
  korvex::InitSets(sets, static_cast<std::int32_t>(nodeCount));
  std::vector<bool> isUsed(nodeCount, false);
  VisitUsable(model, [&](korvex::Section, std::int32_t, const ElementNodes& element) {
    for (std::size_t k = 0; k < element.count; ++k) {
      korvex::JoinSets(sets, element.nodes[0], element.nodes[k]);
      isUsed[static_cast<std::size_t>(element.nodes[k])] = true;
    }
  });

  parts = {};
  parts.partOfNode.assign(nodeCount, -1);
  for (std::size_t node = 0; node < nodeCount; ++node) {
    if (!isUsed[node]) continue;
    // The root is the lowest node of its set, so its part is numbered already.
    const auto root =
        static_cast<std::size_t>(korvex::FindSet(sets, static_cast<std::int32_t>(node)));
    if (root == node) {
      parts.partOfNode[node] = static_cast<std::int32_t>(parts.nodeCounts.size());
      parts.nodeCounts.push_back(0);
    } else {
      parts.partOfNode[node] = parts.partOfNode[root];
    }
    ++parts.nodeCounts[static_cast<std::size_t>(parts.partOfNode[node])];
  }
  parts.elementCounts.assign(parts.nodeCounts.size(), 0);
  VisitUsable(model, [&](korvex::Section, std::int32_t, const ElementNodes& element) {
    const auto part = parts.partOfNode[static_cast<std::size_t>(element.nodes[0])];
    ++parts.elementCounts[static_cast<std::size_t>(part)];
  });
}

}  // namespace kvx
