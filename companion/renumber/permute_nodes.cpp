#include "renumber/permute_nodes.h"

#include "renumber/order_cost.h"

namespace kvx {

namespace {

void MoveReference(const std::vector<std::int32_t>& places, std::int32_t& node) {
  if (node >= 0 && static_cast<std::size_t>(node) < places.size()) {
    node = places[static_cast<std::size_t>(node)];
  }
}

}  // namespace

void MoveNodeReferences(const std::vector<std::int32_t>& places, korvex::ModelTables& tables) {
  for (std::vector<std::int32_t>* table :
       {&tables.Shell4Nodes, &tables.Shell3Nodes, &tables.BeamNodes}) {
    for (std::int32_t& node : *table) MoveReference(places, node);
  }
  for (korvex::NodalRestraint& restraint : tables.NodalRestraints) {
    MoveReference(places, restraint.node);
  }
  for (korvex::NodalForce& force : tables.NodalForces) MoveReference(places, force.node);
}

void PermuteNodes(const std::vector<std::int32_t>& order, korvex::ModelTables& tables) {
  const korvex::ZeroedTable<korvex::Node> before = tables.Nodes;
  for (std::size_t k = 0; k < order.size(); ++k) {
    tables.Nodes[k] = before[static_cast<std::size_t>(order[k])];
  }
  MoveNodeReferences(InvertOrder(order), tables);
}

}  // namespace kvx
