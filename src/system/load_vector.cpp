// The load vector of load_vector.h.
#include "system/load_vector.h"

#include <array>

#include "beam/beam_line_load.h"
#include "model/check_reference.h"
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

// There is no shell element where this is reached, so that a load on one refers to nothing.
void CheckShellLoads(const char* rowKind, const std::vector<ShellSurfaceLoad>& loads,
                     const TableSize& elements) {
  for (std::size_t row = 0; row < loads.size(); ++row) {
    CheckReference(rowKind, static_cast<std::int32_t>(row), "element", loads[row].element,
                   elements);
  }
}

void AddBeamLoads(Model& model) {
  std::array<double, BeamDofs> fe{};
  std::array<std::int32_t, BeamDofs> g{};
  for (std::int32_t row = 0; row < model.NDL_B; ++row) {
    const BeamLineLoad& load = model.BeamLineLoads[static_cast<std::size_t>(row)];
    CheckReference("Distributed load on beam elements", row, "element", load.element,
                   {"beam elements", model.NELEM_B});
    const auto element = static_cast<std::size_t>(load.element);
    BeamLineLoadVector(model.BeamElements[element], load, fe.data());
    BuildDofList(&model.BeamNodes[element * NodesPerBeam], NodesPerBeam, g.data());
    for (std::size_t i = 0; i < BeamDofs; ++i) {
      model.LoadVector[static_cast<std::size_t>(g[i])] += fe[i];
    }
  }
}

}  // namespace

void AssembleLoadVector(Model& model) {
  const auto n = static_cast<std::size_t>(model.NEQ);
  model.Displacements.resize(n);
  model.LoadVector.assign(n, 0.0);
  AddNodalForces(model);
  CheckShellLoads("Distributed load on four-node shell elements", model.Shell4SurfaceLoads,
                  {"four-node shell elements", model.NELEM_S_4ND});
  CheckShellLoads("Distributed load on three-node shell elements", model.Shell3SurfaceLoads,
                  {"three-node shell elements", model.NELEM_S_3ND});
  AddBeamLoads(model);
}

}  // namespace korvex
