// Counting sort: first the elements of each node, then node by node the nodes of these elements.
#include "renumber/node_graph.h"

#include <algorithm>

namespace kvx {

namespace {

// Elements of all kinds as lists of existing nodes.
struct ElementLists {
  std::vector<std::int64_t> begins{0};  // [elements + 1]
  std::vector<std::int32_t> nodes;      // [begins[elements]]
};

void AddElements(const std::vector<std::int32_t>& connectivity, std::size_t nodesPerElement,
                 std::int32_t nodeCount, ElementLists& lists) {
  for (std::size_t k = 0; k < connectivity.size(); ++k) {
    const std::int32_t node = connectivity[k];
    if (node >= 0 && node < nodeCount) lists.nodes.push_back(node);
    if ((k + 1) % nodesPerElement == 0) {
      lists.begins.push_back(static_cast<std::int64_t>(lists.nodes.size()));
    }
  }
}

ElementLists ListElements(const korvex::ModelTables& tables) {
  ElementLists lists;
  const auto nodeCount = static_cast<std::int32_t>(tables.Nodes.size());
  lists.nodes.reserve(tables.Shell4Nodes.size() + tables.Shell3Nodes.size() +
                      tables.BeamNodes.size());
  AddElements(tables.Shell4Nodes, 4, nodeCount, lists);
  AddElements(tables.Shell3Nodes, 3, nodeCount, lists);
  AddElements(tables.BeamNodes, 2, nodeCount, lists);
  return lists;
}

// The elements of each node: begins [nodes + 1] and elements.
void ListElementsOfNodes(const ElementLists& lists, std::vector<std::int64_t>& begins,
                         std::vector<std::int32_t>& elements) {
  for (const std::int32_t node : lists.nodes) ++begins[static_cast<std::size_t>(node) + 1];
  for (std::size_t i = 1; i < begins.size(); ++i) begins[i] += begins[i - 1];
  elements.resize(lists.nodes.size());
  std::vector<std::int64_t> next = begins;
  for (std::size_t e = 0; e + 1 < lists.begins.size(); ++e) {
    for (std::int64_t k = lists.begins[e]; k < lists.begins[e + 1]; ++k) {
      const auto node = static_cast<std::size_t>(lists.nodes[static_cast<std::size_t>(k)]);
      elements[static_cast<std::size_t>(next[node]++)] = static_cast<std::int32_t>(e);
    }
  }
}

}  // namespace

void BuildNodeGraph(const korvex::ModelTables& tables, NodeGraph& graph) {
  const ElementLists lists = ListElements(tables);
  std::vector<std::int64_t> begins(tables.Nodes.size() + 1, 0);
  std::vector<std::int32_t> elements;
  ListElementsOfNodes(lists, begins, elements);
  graph = {};
  graph.begins.reserve(begins.size());
  graph.begins.push_back(0);
  std::vector<std::int32_t> found;
  for (std::size_t node = 0; node + 1 < begins.size(); ++node) {
    found.clear();
    for (std::int64_t k = begins[node]; k < begins[node + 1]; ++k) {
      const auto e = static_cast<std::size_t>(elements[static_cast<std::size_t>(k)]);
      for (std::int64_t l = lists.begins[e]; l < lists.begins[e + 1]; ++l) {
        const std::int32_t other = lists.nodes[static_cast<std::size_t>(l)];
        if (other != static_cast<std::int32_t>(node)) found.push_back(other);
      }
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    graph.neighbours.insert(graph.neighbours.end(), found.begin(), found.end());
    graph.begins.push_back(static_cast<std::int64_t>(graph.neighbours.size()));
  }
}

}  // namespace kvx
