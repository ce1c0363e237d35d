// The profile routines of profile.h.
#include "system/profile.h"

#include <array>
#include <iostream>
#include <limits>
#include <string>

#include "platform/check_memory.h"
#include "platform/console.h"
#include "platform/stop_run.h"

namespace korvex {

namespace {

constexpr double GigabytesPerEntry = 7.450580596923828e-9;  // 8 bytes / 2^30

void WriteMemoryEstimate(double gigabytes, std::ostream& stream) {
  WriteText(stream, "The global stiffness matrix will occupy ");
  stream << gigabytes;
  WriteText(stream, " GB of memory space.");
  WriteLineEnd(stream);
}

}  // namespace

void BuildDofList(const std::int32_t* nodes, std::int32_t nodeCount, std::int32_t* g) {
  for (std::int32_t k = 0; k < nodeCount; ++k) {
    for (std::int32_t d = 0; d < DofsPerNode; ++d) {
      g[k * DofsPerNode + d] = nodes[k] * DofsPerNode + d;
    }
  }
}

void RaiseElementColumns(const std::vector<std::int32_t>& connectivity,
                         std::int32_t nodesPerElement, SkylineMatrix& K) {
  std::array<std::int32_t, Shell4Dofs> g{};  // the largest list; smaller elements use its head
  const auto step = static_cast<std::size_t>(nodesPerElement);
  for (std::size_t first = 0; first < connectivity.size(); first += step) {
    BuildDofList(&connectivity[first], nodesPerElement, g.data());
    RaiseColumns(K, g.data(), nodesPerElement * DofsPerNode);
  }
}

void ReserveSystem(const std::string& what, std::int32_t equations, SkylineMatrix& K,
                   std::vector<double>& loads, std::vector<double>& displacements) {
  const auto n = static_cast<std::size_t>(equations);
  AllocateOrStop(what, n, BytesPerEquation, [&] {
    K.ColumnHeights.reserve(n);
    K.DiagonalAddress.reserve(n);
    loads.reserve(n);
    displacements.reserve(n);
  });
}

void NumberEquations(Model& model) {
  const std::int64_t equations = std::int64_t{model.NPOIN} * DofsPerNode;
  constexpr std::int64_t Limit = std::numeric_limits<std::int32_t>::max();
  if (equations > Limit) {
    StopWithNotice(std::to_string(model.NPOIN) + " nodal points have " + std::to_string(equations) +
                   " equations; at most " + std::to_string(Limit) + " can be numbered.");
  }
  model.NEQ = static_cast<std::int32_t>(equations);
  ReserveSystem("the system of " + std::to_string(equations) + " equations", model.NEQ,
                model.Stiffness, model.LoadVector, model.Displacements);
}

void BuildProfile(Model& model) {
  if (model.NEQ < 1) return;
  InitColumnHeights(model.Stiffness, model.NEQ);
  RaiseElementColumns(model.Shell4Nodes, NodesPerShell4, model.Stiffness);
  RaiseElementColumns(model.Shell3Nodes, NodesPerShell3, model.Stiffness);
  RaiseElementColumns(model.BeamNodes, NodesPerBeam, model.Stiffness);
}

void ReportMemoryEstimate(const SkylineMatrix& K, std::ostream& log) {
  const double gigabytes = static_cast<double>(K.SkylineSize) * GigabytesPerEntry;
  WriteMemoryEstimate(gigabytes, std::cout);
  WriteMemoryEstimate(gigabytes, log);
}

}  // namespace korvex
