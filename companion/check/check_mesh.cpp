#include "check/check_mesh.h"

#include "check/coincident_nodes.h"
#include "check/edge_table.h"
#include "check/hanging_nodes.h"
#include "check/loose_nodes.h"
#include "check/mesh_tolerance.h"
#include "check/node_tree.h"
#include "check/normals.h"
#include "check/separate_parts.h"
#include "check/unjoined_places.h"

namespace kvx {

namespace {

void BuildTreeOfParts(const CheckedModel& model, const Parts& parts, NodeTree& tree) {
  std::vector<std::int32_t> nodes;
  for (std::size_t node = 0; node < parts.partOfNode.size(); ++node) {
    if (parts.partOfNode[node] >= 0) nodes.push_back(static_cast<std::int32_t>(node));
  }
  BuildNodeTree(model, nodes, tree);
}

// The nodes that the findings tell apart.
void CollectGaps(const CheckedModel& model, const CoincidentNodes& coincident,
                 const std::vector<HangingNode>& hanging, std::vector<Gap>& gaps) {
  for (std::size_t node = 0; node < coincident.leaderOf.size(); ++node) {
    const std::int32_t leader = coincident.leaderOf[node];
    if (leader >= 0) gaps.push_back({static_cast<std::int32_t>(node), leader});
  }
  for (const HangingNode& at : hanging) {
    gaps.push_back({at.node, NodesOf(model.tables, at.section, at.row).nodes[0]});
  }
}

void CheckConnections(const Parts& parts, const EdgeTable& edges, double tolerance,
                      CheckedModel& model, std::vector<Gap>& gaps, FindingList& findings) {
  NodeTree tree;
  BuildTreeOfParts(model, parts, tree);
  CoincidentNodes coincident;
  FindCoincidentNodes(model, tree, tolerance, coincident);
  HangingNodes hanging;
  if (!FindHangingNodes(model, tree, tolerance, hanging)) {
    hanging = {};
    model.notChecked.emplace_back(
        "Whether nodes lie on elements that they do not belong to: too many elements overlap.");
  }
  // The middle of a spider may lie on a node of the section that it holds: a beam between the two
  // would have no length.
  LeaveOutPlaces(hanging.spiderMiddles, coincident);
  NameUnjoinedPlaces(model, coincident, hanging.all, edges, tolerance, findings);
  CollectGaps(model, coincident, hanging.all, gaps);
}

}  // namespace

void CheckMesh(const Parts& parts, double tolerance, CheckedModel& model, std::vector<Gap>& gaps,
               FindingList& findings) {
  if (!(tolerance > 0.0)) tolerance = DefaultTolerance(model);
  NameLooseNodes(parts, model, findings);
  EdgeTable edges;
  BuildEdgeTable(model, edges);
  CheckConnections(parts, edges, tolerance, model, gaps, findings);
  NameOppositeNormals(edges, model, findings);
  NameSeparateParts(model, parts, tolerance, findings);
}

}  // namespace kvx
