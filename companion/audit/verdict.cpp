#include "audit/verdict.h"

#include <algorithm>
#include <cmath>

#include "audit/force_scales.h"
#include "base/finite.h"
#include "report/stop.h"
#include "system/assemble_stiffness.h"
#include "tables/node_box.h"

namespace kvx {

using korvex::AreFinite;
using korvex::DofsPerNode;
using korvex::Model;
using korvex::Vector3;

namespace {

// The nodes with displacements that are not finite.
void FindNodes(const std::vector<double>& u, NotFinite& out) {
  for (std::size_t first = 0; first < u.size(); first += DofsPerNode) {
    if (AreFinite(&u[first], DofsPerNode)) continue;
    if (++out.nodes > 1) continue;
    out.node = static_cast<std::int32_t>(first / DofsPerNode);
    while (std::isfinite(u[first + static_cast<std::size_t>(++out.dof)])) {
    }
  }
}

void FindElement(const Model& model, NotFinite& out) {
  std::size_t index = 0;
  korvex::FormElementMatrices(model, [&](const double* ke, const std::int32_t*, std::int32_t n) {
    if (!out.hasElement &&
        !AreFinite(ke, static_cast<std::size_t>(n) * static_cast<std::size_t>(n))) {
      out.hasElement = true;
      out.element = ElementAt(model, index);
    }
    ++index;
  });
}

void FindLoad(const Model& model, NotFinite& out) {
  const auto bad = std::find_if(model.LoadVector.begin(), model.LoadVector.end(),
                                [](double load) { return !std::isfinite(load); });
  if (bad == model.LoadVector.end()) return;
  const auto equation = static_cast<std::int32_t>(bad - model.LoadVector.begin());
  out.loadNode = equation / DofsPerNode;
  out.loadDof = equation % DofsPerNode;
}

void FindLonelyNode(const Model& model, NotFinite& out) {
  std::vector<bool> hasElement(model.Tables.Nodes.size());
  for (const auto* nodes :
       {&model.Tables.Shell4Nodes, &model.Tables.Shell3Nodes, &model.Tables.BeamNodes}) {
    for (const std::int32_t node : *nodes) hasElement[static_cast<std::size_t>(node)] = true;
  }
  for (std::size_t node = 0; node < hasElement.size(); ++node) {
    if (hasElement[node] || AreFinite(&model.Displacements[node * DofsPerNode], DofsPerNode)) {
      continue;
    }
    out.lonelyNode = static_cast<std::int32_t>(node);
    return;
  }
}

// first: of the dofs, 0 or 3.
LargestDisplacement FindLargest(const std::vector<double>& u, std::size_t first) {
  LargestDisplacement largest;
  for (std::size_t at = 0; at < u.size(); at += DofsPerNode) {
    if (!AreFinite(&u[at], DofsPerNode)) continue;
    const double value = std::hypot(u[at + first], u[at + first + 1], u[at + first + 2]);
    if (value > largest.value) largest = {value, static_cast<std::int32_t>(at / DofsPerNode)};
  }
  return largest;
}

}  // namespace

void JudgeSolution(const SolvedModel& solved, Verdict& verdict) {
  const Model& model = solved.model;
  const std::size_t n = model.Tables.Nodes.size() * DofsPerNode;
  if (model.Displacements.size() != n || model.LoadVector.size() != n) {
    throw korvex::Stop{korvex::StopKind::Notice, "The solved model is not complete."};
  }
  verdict = {};
  NotFinite& notFinite = verdict.notFinite;
  FindNodes(model.Displacements, notFinite);
  if (notFinite.nodes > 0) {
    FindElement(model, notFinite);
    FindLoad(model, notFinite);
    FindLonelyNode(model, notFinite);
  }
  verdict.translation = FindLargest(model.Displacements, 0);
  verdict.rotation = FindLargest(model.Displacements, 3);
  const NodeBox box = MeasureNodeBox(model.Tables);
  verdict.extent = box.diagonal;
  verdict.share = RatioOf(verdict.translation.value, verdict.extent);
}

}  // namespace kvx
