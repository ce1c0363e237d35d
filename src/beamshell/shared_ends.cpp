#include "beamshell/shared_ends.h"

#include <utility>

namespace korvex {

void IndexEnds(std::vector<Vector3> points, SharedEnds& ends) {
  ends.points = std::move(points);
  BuildPointGrid(ends.points, ends.grid);
}

void IndexEnds(const Model& model, SharedEnds& ends) {
  std::vector<Vector3> points;
  for (const BeamElement& beam : model.BeamElements) {
    points.insert(points.end(), {beam.NodeI, beam.NodeJ});
  }
  IndexEnds(std::move(points), ends);
}

void AppendSharing(const SharedEnds& ends, std::int32_t beam, std::vector<std::int32_t>& beams) {
  std::vector<std::size_t> near;
  const auto first = 2 * static_cast<std::size_t>(beam);
  for (const std::size_t end : {first, first + 1}) {
    const Vector3& point = ends.points[end];
    if (!IsFinite(point)) continue;
    near.clear();
    FindNear(ends.grid, point, near);
    for (const std::size_t other : near) {
      if (Length(Subtract(ends.points[other], point)) < CoincidenceTolerance) {
        beams.push_back(static_cast<std::int32_t>(other / 2));
      }
    }
  }
}

}  // namespace korvex
