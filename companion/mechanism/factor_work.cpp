#include "mechanism/factor_work.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace kvx {

namespace {

// Lowers the first node that each node of an element is coupled with.
void LowerFirstNodes(const std::vector<std::int32_t>& connectivity, std::size_t nodesPerElement,
                     std::vector<std::int32_t>& firstNode) {
  const auto count = static_cast<std::int32_t>(firstNode.size());
  for (std::size_t e = 0; e + nodesPerElement <= connectivity.size(); e += nodesPerElement) {
    const std::int32_t* nodes = &connectivity[e];
    const std::int32_t lowest = *std::min_element(nodes, nodes + nodesPerElement);
    const std::int32_t highest = *std::max_element(nodes, nodes + nodesPerElement);
    if (lowest < 0 || highest >= count) continue;
    for (std::size_t k = 0; k < nodesPerElement; ++k) {
      std::int32_t& first = firstNode[static_cast<std::size_t>(nodes[k])];
      first = std::min(first, lowest);
    }
  }
}

}  // namespace

FactorWork PredictFactorWork(const korvex::ModelTables& tables) {
  std::vector<std::int32_t> firstNode(tables.Nodes.size());
  std::iota(firstNode.begin(), firstNode.end(), 0);
  LowerFirstNodes(tables.Shell4Nodes, korvex::NodesPerShell4, firstNode);
  LowerFirstNodes(tables.Shell3Nodes, korvex::NodesPerShell3, firstNode);
  LowerFirstNodes(tables.BeamNodes, korvex::NodesPerBeam, firstNode);
  FactorWork work;
  for (std::size_t node = 0; node < firstNode.size(); ++node) {
    const double above = static_cast<double>(node) - static_cast<double>(firstNode[node]);  // nodes
    for (int d = 0; d < korvex::DofsPerNode; ++d) {
      const double height = korvex::DofsPerNode * above + d + 1.0;
      work.multiplications += 0.5 * height * height;
      work.bytes += sizeof(double) * height;
    }
  }
  return work;
}

}  // namespace kvx
