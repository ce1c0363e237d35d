// F = nodal forces + sum of the element load vectors, in table order. Another order would change
// the last bits.
#include "system/load_vector.h"

#include <array>

#include "beam/beam_line_load.h"
#include "deck/check_reference.h"
#include "shell/shell_loads.h"

namespace korvex {

namespace {

void AddNodalForces(Model& model) {
  for (std::size_t row = 0; row < model.Tables.NodalForces.size(); ++row) {
    const NodalForce& force = model.Tables.NodalForces[row];
    CheckReference("Force", static_cast<std::int32_t>(row), "node", force.node,
                   {"nodal points", model.Tables.NPOIN});
    double* F = &model.LoadVector[static_cast<std::size_t>(force.node) * DofsPerNode];
    for (std::size_t d = 0; d < DofsPerNode; ++d) F[d] += force.components[d];
  }
}

// The names of a kind of distributed loads and of its elements in notices.
struct LoadKind {
  const char* row;
  const char* elements;
};

// Adds the equivalent nodal loads of all loads on one kind of element.
// connectivity: elements x Nodes node indices, element-major; vector: the kind's routine.
template <std::int32_t Nodes, typename Element, typename Load>
void AddElementLoads(const ZeroedTable<Load>& loads, const LoadKind& kind,
                     const std::vector<Element>& elements,
                     const std::vector<std::int32_t>& connectivity,
                     void (*vector)(const Element&, const Load&, double*), std::vector<double>& F) {
  constexpr std::int32_t n = Nodes * DofsPerNode;
  std::array<double, n> fe{};
  std::array<std::int32_t, n> g{};
  for (std::size_t row = 0; row < loads.size(); ++row) {
    const Load& load = loads[row];
    CheckReference(kind.row, static_cast<std::int32_t>(row), "element", load.element,
                   {kind.elements, static_cast<std::int32_t>(elements.size())});
    const auto element = static_cast<std::size_t>(load.element);
    vector(elements[element], load, fe.data());
    BuildDofList(&connectivity[element * Nodes], Nodes, g.data());
    for (std::size_t i = 0; i < n; ++i) F[static_cast<std::size_t>(g[i])] += fe[i];
  }
}

}  // namespace

void AssembleLoadVector(Model& model) {
  const ModelTables& tables = model.Tables;
  const auto n = static_cast<std::size_t>(model.NEQ);
  model.Displacements.resize(n);
  model.LoadVector.assign(n, 0.0);
  AddNodalForces(model);
  AddElementLoads<NodesPerShell4>(
      tables.Shell4SurfaceLoads,
      {"Distributed load on four-node shell elements", "four-node shell elements"},
      model.Shell4Elements, tables.Shell4Nodes, Shell4LoadVector, model.LoadVector);
  AddElementLoads<NodesPerShell3>(
      tables.Shell3SurfaceLoads,
      {"Distributed load on three-node shell elements", "three-node shell elements"},
      model.Shell3Elements, tables.Shell3Nodes, Shell3LoadVector, model.LoadVector);
  AddElementLoads<NodesPerBeam>(
      tables.BeamLineLoads, {"Distributed load on beam elements", "beam elements"},
      model.BeamElements, tables.BeamNodes, BeamLineLoadVector, model.LoadVector);
}

}  // namespace korvex
