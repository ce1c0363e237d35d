#include "view/details_block.h"

#include <algorithm>
#include <string>

#include "base/dof_counts.h"
#include "report/stop.h"

namespace kvx {

namespace {

using korvex::BeamShellModel;

// Whether the sizes of its arrays fit one another, and its shells have outline nodes only.
bool IsWhole(const BeamShellModel& detail) {
  const std::size_t nodes = detail.NodeCoords.size();
  if (nodes < 2 || detail.Displacements.size() != nodes * korvex::DofsPerNode ||
      detail.ShellNodes.size() != 4 * detail.Shells.size()) {
    return false;
  }
  return std::all_of(detail.ShellNodes.begin(), detail.ShellNodes.end(), [&](std::int32_t node) {
    return node >= 1 && static_cast<std::size_t>(node) + 1 < nodes;
  });
}

void CollectNodes(const BeamShellModel& detail, DetailModels& details) {
  for (std::size_t n = 1; n + 1 < detail.NodeCoords.size(); ++n) {
    const korvex::Vector3& place = detail.NodeCoords[n];
    details.coordinates.insert(details.coordinates.end(), place.begin(), place.end());
    const double* u = &detail.Displacements[n * korvex::DofsPerNode];
    details.displacements.insert(details.displacements.end(), u, u + 3);
  }
}

void CollectShells(const BeamShellModel& detail, std::int32_t beam, std::size_t firstNode,
                   DetailModels& details) {
  for (const std::int32_t node : detail.ShellNodes) {
    details.shells.push_back(static_cast<std::int32_t>(firstNode) + node - 1);
  }
  details.beams.insert(details.beams.end(), detail.Shells.size(), beam);
}

}  // namespace

void CollectDetails(const korvex::Model& model, DetailModels& details) {
  details = {};
  StressRowTable table;
  for (std::size_t b = 0; b < model.BeamShellModels.size(); ++b) {
    const BeamShellModel& detail = model.BeamShellModels[b];
    if (detail.Shells.empty()) continue;
    if (!IsWhole(detail)) {
      throw korvex::Stop{korvex::StopKind::Notice,
                         "The detail model of beam " + std::to_string(b) + " is not whole."};
    }
    const std::size_t firstNode = details.coordinates.size() / 3;
    CollectNodes(detail, details);
    CollectShells(detail, static_cast<std::int32_t>(b), firstNode, details);
    AddStressCorners(detail.Shells, table, details.stresses);
  }
}

void AddDetails(const DetailModels& details, PageBlock& block) {
  AddDoubles("coordinates", details.coordinates, block, 3);
  AddDecimals("displacements", details.displacements, block, 3);
  AddIntegers("shells", details.shells, block, 4);
  AddIntegers("beams", details.beams, block);
  AddStressColumns("stresses", details.stresses, block);
}

}  // namespace kvx
