// Column j reaches from its diagonal up to the lowest equation of all elements at its node:
// height = j - lowest + 1.
#include "system/profile.h"

#include <array>
#include <limits>
#include <string>

#include "report/check_memory.h"
#include "report/stop.h"
#include "skyline/reserve_system.h"

namespace korvex {

namespace {

constexpr double GigabytesPerEntry = 7.450580596923828e-9;  // 8 bytes / 2^30

}  // namespace

void NumberEquations(Model& model) {
  const std::int32_t nodes = model.Tables.NPOIN;
  const std::int64_t equations = std::int64_t{nodes} * DofsPerNode;
  constexpr std::int64_t Limit = std::numeric_limits<std::int32_t>::max();
  if (equations > Limit) {
    throw Stop{StopKind::Notice, std::to_string(nodes) + " nodal points have " +
                                     std::to_string(equations) + " equations; at most " +
                                     std::to_string(Limit) + " can be numbered."};
  }
  model.NEQ = static_cast<std::int32_t>(equations);
  ReserveSystem("the system of " + std::to_string(equations) + " equations", model.NEQ,
                model.Stiffness, model.LoadVector, model.Displacements);
}

void RaiseElementColumns(const std::vector<std::int32_t>& connectivity,
                         std::int32_t nodesPerElement, SkylineMatrix& K) {
  std::array<std::int32_t, Shell4Dofs> g{};  // smaller elements use the first entries
  const auto step = static_cast<std::size_t>(nodesPerElement);
  for (std::size_t first = 0; first < connectivity.size(); first += step) {
    BuildDofList(&connectivity[first], nodesPerElement, g.data());
    RaiseColumns(K, g.data(), nodesPerElement * DofsPerNode);
  }
}

void BuildProfile(Model& model) {
  if (model.NEQ < 1) return;
  InitColumnHeights(model.Stiffness, model.NEQ);
  RaiseElementColumns(model.Tables.Shell4Nodes, NodesPerShell4, model.Stiffness);
  RaiseElementColumns(model.Tables.Shell3Nodes, NodesPerShell3, model.Stiffness);
  RaiseElementColumns(model.Tables.BeamNodes, NodesPerBeam, model.Stiffness);
}

double EstimateGigabytes(const SkylineMatrix& K) {
  return static_cast<double>(K.SkylineSize) * GigabytesPerEntry;
}

void AllocateStiffness(SkylineMatrix& K) {
  AllocateOrStop("the global stiffness matrix", static_cast<std::uint64_t>(K.SkylineSize),
                 sizeof(double), [&] { AllocateValues(K); });
}

}  // namespace korvex
