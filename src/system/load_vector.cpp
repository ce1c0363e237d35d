// The load vector of load_vector.h.
#include "system/load_vector.h"

#include <array>

#include "beam/beam_line_load.h"
#include "model/check_reference.h"
#include "shell/shell_loads.h"
#include "system/profile.h"

namespace korvex {

namespace {

void AddNodalForces(Model& model) {
  for (std::int32_t row = 0; row < model.NFOR; ++row) {
    const NodalForce& force = model.NodalForces[static_cast<std::size_t>(row)];
    CheckReference("Force", row, "node", force.node, {"nodal points", model.NPOIN});
    double* F = &model.LoadVector[static_cast<std::size_t>(force.node) * DofsPerNode];
    for (std::size_t d = 0; d < DofsPerNode; ++d) F[d] += force.components[d];
  }
}

// What a kind of distributed load is called in notices, and its elements.
struct LoadKind {
  const char* row;
  TableSize elements;
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
                   kind.elements);
    const auto element = static_cast<std::size_t>(load.element);
    vector(elements[element], load, fe.data());
    BuildDofList(&connectivity[element * Nodes], Nodes, g.data());
    for (std::size_t i = 0; i < n; ++i) F[static_cast<std::size_t>(g[i])] += fe[i];
  }
}

}  // namespace

void AssembleLoadVector(Model& model) {
  const auto n = static_cast<std::size_t>(model.NEQ);
  model.Displacements.resize(n);
  model.LoadVector.assign(n, 0.0);
  AddNodalForces(model);
  AddElementLoads<NodesPerShell4>(model.Shell4SurfaceLoads,
                                  {"Distributed load on four-node shell elements",
                                   {"four-node shell elements", model.NELEM_S_4ND}},
                                  model.Shell4Elements, model.Shell4Nodes, Shell4LoadVector,
                                  model.LoadVector);
  AddElementLoads<NodesPerShell3>(model.Shell3SurfaceLoads,
                                  {"Distributed load on three-node shell elements",
                                   {"three-node shell elements", model.NELEM_S_3ND}},
                                  model.Shell3Elements, model.Shell3Nodes, Shell3LoadVector,
                                  model.LoadVector);
  AddElementLoads<NodesPerBeam>(
      model.BeamLineLoads, {"Distributed load on beam elements", {"beam elements", model.NELEM_B}},
      model.BeamElements, model.BeamNodes, BeamLineLoadVector, model.LoadVector);
}

}  // namespace korvex
