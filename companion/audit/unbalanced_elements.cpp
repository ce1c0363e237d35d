#include "audit/unbalanced_elements.h"

#include <cmath>

namespace kvx {

using korvex::Vector3;

namespace {

bool HasNodeTwice(const NodeSpan& span) {
  for (std::int32_t a = 0; a < span.count; ++a) {
    for (std::int32_t b = a + 1; b < span.count; ++b) {
      if (span.nodes[a] == span.nodes[b]) return true;
    }
  }
  return false;
}

// e3: the unit normal of the element's frame, whose third column it is.
double WarpOffset(const korvex::Shell4Element& shell, Vector3& e3) {
  const korvex::ElementFrame& frame = shell.Frame;
  e3 = {frame[2], frame[5], frame[8]};
  const auto& c = shell.Coordinates;
  const Vector3 diagonal = korvex::Subtract({c[6], c[7], c[8]}, {c[0], c[1], c[2]});
  const double h = e3[0] * diagonal[0] + e3[1] * diagonal[1] + e3[2] * diagonal[2];
  return std::fabs(h) > WarpThreshold * korvex::Length(diagonal) ? h : 0.0;
}

void SumForces(const korvex::Model& model, const StiffForces& forces, const Vector3& centre,
               std::array<double, 6>& sum) {
  const NodeSpan span = NodesOfElement(model, forces.element);
  for (std::int32_t k = 0; k < span.count; ++k) {
    AddForceAt(PlaceOfNode(model, span.nodes[k]), centre, forces.stiff + 6 * k, sum);
  }
}

}  // namespace

void AddIfUnbalanced(const korvex::Model& model, const StiffForces& forces, const Vector3& centre,
                     std::vector<UnbalancedElement>& list) {
  UnbalancedElement unbalanced;
  unbalanced.element = forces.element;
  Vector3 e3{};
  if (forces.element.kind == ElementKind::Shell4) {
    const auto row = static_cast<std::size_t>(forces.element.row);
    unbalanced.offset = WarpOffset(model.Shell4Elements[row], e3);
  }
  unbalanced.hasNodeTwice = HasNodeTwice(NodesOfElement(model, forces.element));
  if (unbalanced.hasNodeTwice) {
    SumForces(model, forces, centre, unbalanced.sum);
  } else if (unbalanced.offset != 0.0) {
    const double* F3 = forces.stiff + 12;
    const Vector3 couple = korvex::Cross(e3, {F3[0], F3[1], F3[2]});
    for (std::size_t i = 0; i < 3; ++i) unbalanced.sum[3 + i] = unbalanced.offset * couple[i];
  } else {
    return;
  }
  list.push_back(unbalanced);
}

void AddForceAt(const Vector3& place, const Vector3& centre, const double* six,
                std::array<double, 6>& sum) {
  const Vector3 moment = korvex::Cross(korvex::Subtract(place, centre), {six[0], six[1], six[2]});
  for (std::size_t i = 0; i < 3; ++i) {
    sum[i] += six[i];
    sum[3 + i] += six[3 + i] + moment[i];
  }
}

Vector3 PlaceOfNode(const korvex::Model& model, std::int32_t node) {
  const korvex::Node& place = model.Tables.Nodes[static_cast<std::size_t>(node)];
  return {place.x, place.y, place.z};
}

Vector3 PlaceOnBeam(const korvex::Model& model, std::int32_t beam, double s) {
  const std::int32_t* const nodes = &model.Tables.BeamNodes[2 * static_cast<std::size_t>(beam)];
  const Vector3 first = PlaceOfNode(model, nodes[0]), second = PlaceOfNode(model, nodes[1]);
  Vector3 place{};
  for (std::size_t i = 0; i < 3; ++i) place[i] = (1.0 - s) * first[i] + s * second[i];
  return place;
}

}  // namespace kvx
