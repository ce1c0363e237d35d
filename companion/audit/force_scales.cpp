#include "audit/force_scales.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "audit/unbalanced_elements.h"

namespace kvx {

using korvex::DofsPerNode;

namespace {

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

// The largest distance of an element's first node from its others.
double SizeOf(const korvex::Model& model, const NodeSpan& span) {
  const korvex::Vector3 first = PlaceOfNode(model, span.nodes[0]);
  double size = 0.0;
  for (std::int32_t k = 1; k < span.count; ++k) {
    const korvex::Vector3 place = PlaceOfNode(model, span.nodes[k]);
    size = LargerMagnitude(size, korvex::Length(korvex::Subtract(place, first)));
  }
  return size;
}

}  // namespace

double LargerMagnitude(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return NotANumber;
  return std::max(std::fabs(a), std::fabs(b));
}

double RatioOf(double part, double whole) {
  if (!std::isfinite(part) || !std::isfinite(whole)) return NotANumber;
  return part == 0.0 ? 0.0 : std::fabs(part) / whole;
}

void RaiseScales(const korvex::Model& model, const ElementRef& element, const double* forces,
                 ForceScales& scales) {
  const NodeSpan span = NodesOfElement(model, element);
  double force = 0.0, moment = 0.0;
  for (std::int32_t i = 0; i < span.count * DofsPerNode; ++i) {
    double& kind = i % DofsPerNode < 3 ? force : moment;
    kind = LargerMagnitude(kind, forces[i]);
  }
  const double size = SizeOf(model, span);
  scales.force = LargerMagnitude(scales.force, force);
  scales.moment = LargerMagnitude(scales.moment, LargerMagnitude(moment, force * size));
  // An element without size has no stiffness that means anything.
  if (size > 0.0) scales.force = LargerMagnitude(scales.force, moment / size);
}

DofValue FindLargestDof(const std::vector<double>& values, const ForceScales& scales,
                        const std::vector<std::uint8_t>* skipped) {
  DofValue largest;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (skipped != nullptr && (*skipped)[i] != 0) continue;
    const std::size_t dof = i % DofsPerNode;
    const double relative = RatioOf(values[i], dof < 3 ? scales.force : scales.moment);
    if (largest.node >= 0 && !std::isnan(relative) && relative <= largest.relative) continue;
    largest = {values[i], relative, static_cast<std::int32_t>(i / DofsPerNode),
               static_cast<std::int32_t>(dof)};
    if (std::isnan(relative)) break;
  }
  return largest;
}

}  // namespace kvx
