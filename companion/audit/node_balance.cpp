#include "audit/node_balance.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "beam/beam_frame.h"
#include "report/stop.h"

namespace kvx {

using korvex::DofsPerNode;
using korvex::Vector3;

namespace {

void RequireMatch(const SolvedModel& solved, const Reactions& reactions) {
  const std::size_t n = solved.model.Tables.Nodes.size() * DofsPerNode;
  if (reactions.r.size() == n && solved.isHeld.size() == n &&
      solved.model.Displacements.size() == n) {
    return;
  }
  throw korvex::Stop{korvex::StopKind::Notice,
                     "The support forces do not belong to the solved model."};
}

// Adds the table's nodal forces without those that prescribe displacements.
// add: gets the node, dof and component.
template <typename Function>
void ForNodalForces(const SolvedModel& solved, const Function& add) {
  const auto& forces = solved.model.Tables.NodalForces;
  auto prescribed = solved.prescribed.begin();  // by row, then by dof
  for (std::size_t row = 0; row < forces.size(); ++row) {
    for (std::size_t d = 0; d < DofsPerNode; ++d) {
      if (prescribed != solved.prescribed.end() &&
          static_cast<std::size_t>(prescribed->row) == row &&
          static_cast<std::size_t>(prescribed->dof) == d) {
        ++prescribed;
        continue;
      }
      add(forces[row].node, d, forces[row].components[d]);
    }
  }
}

template <typename Function>
void ForElements(const korvex::Model& model, const Function& visit) {
  const auto visitAll = [&](ElementKind kind, std::size_t count) {
    for (std::size_t row = 0; row < count; ++row) {
      visit(ElementRef{kind, static_cast<std::int32_t>(row)});
    }
  };
  visitAll(ElementKind::Shell4, model.Shell4Elements.size());
  visitAll(ElementKind::Shell3, model.Shell3Elements.size());
  visitAll(ElementKind::Beam, model.BeamElements.size());
}

// The nodal forces and the support forces.
void BeginLeft(const SolvedModel& solved, const Reactions& reactions, NodeBalance& balance) {
  balance.left.assign(reactions.r.size(), 0.0);
  ForNodalForces(solved, [&](std::int32_t node, std::size_t d, double force) {
    balance.left[static_cast<std::size_t>(node) * DofsPerNode + d] += force;
  });
  for (std::size_t i = 0; i < balance.left.size(); ++i) {
    double& scale = i % DofsPerNode < 3 ? balance.scales.force : balance.scales.moment;
    scale = LargerMagnitude(scale, balance.left[i]);
    if (solved.isHeld[i] == 0) continue;
    balance.left[i] += reactions.r[i];
    scale = LargerMagnitude(scale, reactions.r[i]);
  }
}

}  // namespace

void BalanceNodes(const SolvedModel& solved, const Reactions& reactions,
                  const EndForcesOf& endForces, NodeBalance& balance) {
  RequireMatch(solved, reactions);
  const korvex::Model& model = solved.model;
  balance = {};
  BeginLeft(solved, reactions, balance);
  LoadIndex index;
  IndexLoads(model, index);
  EndForceArray forces{};
  ForElements(model, [&](const ElementRef& element) {
    if (endForces) {
      endForces(element, forces);
    } else {
      FormEndForces(model, index, element, forces);
    }
    const NodeSpan span = NodesOfElement(model, element);
    for (std::int32_t k = 0; k < span.count; ++k) {
      const auto first = static_cast<std::size_t>(span.nodes[k]) * DofsPerNode;
      for (std::size_t d = 0; d < DofsPerNode; ++d) {
        balance.left[first + d] -= forces[static_cast<std::size_t>(k) * DofsPerNode + d];
      }
    }
    RaiseScales(model, element, forces.data(), balance.scales);
  });
  balance.worst = FindLargestDof(balance.left, balance.scales, nullptr);
}

void ListNodeParts(const SolvedModel& solved, const Reactions& reactions, std::int32_t node,
                   NodeParts& parts) {
  RequireMatch(solved, reactions);
  if (node < 0 || node >= solved.model.Tables.NPOIN) {
    throw korvex::Stop{korvex::StopKind::Notice,
                       "There is no node " + std::to_string(node) + "; there are " +
                           std::to_string(solved.model.Tables.NPOIN) + " nodal points."};
  }
  parts = {};
  ForNodalForces(solved, [&](std::int32_t loaded, std::size_t d, double force) {
    if (loaded == node) parts.load[d] += force;
  });
  const auto first = static_cast<std::size_t>(node) * DofsPerNode;
  for (std::size_t d = 0; d < DofsPerNode; ++d) {
    if (solved.isHeld[first + d] != 0) parts.reaction[d] = reactions.r[first + d];
    parts.left[d] = parts.load[d] + parts.reaction[d];
  }
  LoadIndex index;
  IndexLoads(solved.model, index);
  ForElements(solved.model, [&](const ElementRef& element) {
    const NodeSpan span = NodesOfElement(solved.model, element);
    for (std::int32_t k = 0; k < span.count; ++k) {
      if (span.nodes[k] != node) continue;
      EndForceArray forces{};
      FormEndForces(solved.model, index, element, forces);
      ElementPart part{element, k, {}};
      std::copy_n(&forces[static_cast<std::size_t>(k) * DofsPerNode], DofsPerNode,
                  part.force.begin());
      for (std::size_t d = 0; d < DofsPerNode; ++d) parts.left[d] -= part.force[d];
      parts.elements.push_back(part);
    }
  });
}

void MoveSectionForcesToNodes(const korvex::BeamElement& beam, const ForceSum& first,
                              const ForceSum& second, EndForceArray& forces) {
  korvex::BeamFrame frame;
  korvex::ComputeBeamFrame(beam, frame);
  const Vector3 e{beam.Section.Ex, beam.Section.Ey, beam.Section.Ez};
  forces.fill(0.0);
  for (std::size_t end = 0; end < 2; ++end) {
    const ForceSum& s = end == 0 ? first : second;
    const double sign = end == 0 ? -1.0 : 1.0;
    const Vector3 lever = korvex::Cross(e, {s[0], s[1], s[2]});
    for (std::size_t i = 0; i < 3; ++i) {
      double& force = forces[6 * end + i];
      double& moment = forces[6 * end + 3 + i];
      for (std::size_t k = 0; k < 3; ++k) {
        // The rows of the frame are the local axes.
        force += sign * frame[3 * k + i] * s[k];
        moment += sign * frame[3 * k + i] * (s[3 + k] + lever[k]);
      }
    }
  }
}

}  // namespace kvx
