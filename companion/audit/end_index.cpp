#include "audit/end_index.h"

#include <algorithm>
#include <cmath>

#include "beamshell/point_grid.h"

namespace kvx {

using korvex::BeamElement, korvex::Model, korvex::Vector3;

namespace {

// Of length 1 and along no plane of a usual mesh, so that few ends have the same height.
constexpr Vector3 Oblique{0.8135, 0.4907, 0.3122};

double HeightOf(const Vector3& p) {
  return p[0] * Oblique[0] + p[1] * Oblique[1] + p[2] * Oblique[2];
}

bool ShareAnEnd(const BeamElement& a, const BeamElement& b) {
  for (const Vector3& p : {a.NodeI, a.NodeJ}) {
    for (const Vector3& q : {b.NodeI, b.NodeJ}) {
      if (korvex::Length(korvex::Subtract(p, q)) < korvex::CoincidenceTolerance) return true;
    }
  }
  return false;
}

}  // namespace

void IndexEnds(const Model& model, EndIndex& index) {
  index.ends.clear();
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    const BeamElement& beam = model.BeamElements[b];
    for (const double height : {HeightOf(beam.NodeI), HeightOf(beam.NodeJ)}) {
      if (std::isfinite(height)) index.ends.emplace_back(height, static_cast<std::int32_t>(b));
    }
  }
  std::sort(index.ends.begin(), index.ends.end());
}

void AppendSharing(const Model& model, const EndIndex& index, std::int32_t row,
                   std::vector<std::int32_t>& rows) {
  const BeamElement& beam = model.BeamElements[static_cast<std::size_t>(row)];
  for (const double height : {HeightOf(beam.NodeI), HeightOf(beam.NodeJ)}) {
    if (!std::isfinite(height)) continue;
    // Twice the distance: the heights are rounded.
    const std::pair<double, std::int32_t> first{height - 2.0 * korvex::CoincidenceTolerance, 0};
    for (auto at = std::lower_bound(index.ends.begin(), index.ends.end(), first);
         at != index.ends.end() && at->first <= height + 2.0 * korvex::CoincidenceTolerance; ++at) {
      const BeamElement& other = model.BeamElements[static_cast<std::size_t>(at->second)];
      if (ShareAnEnd(beam, other)) rows.push_back(at->second);
    }
  }
}

}  // namespace kvx
