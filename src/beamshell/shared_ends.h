// Which beams share an end point: those whose detail models are averaged together.
//
// Two ends are shared where their distance is less than CoincidenceTolerance (point_grid.h). An end
// that is not finite is shared with none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/vector3.h"
#include "beamshell/point_grid.h"
#include "model/model.h"

namespace korvex {

// The ends of all beams.
struct SharedEnds {
  std::vector<Vector3> points;  // [2 x beams] both ends of each beam, beam after beam
  PointGrid grid;               // of the points
};

// Fills `ends`. points: [2 x beams], as above.
void IndexEnds(std::vector<Vector3> points, SharedEnds& ends);

// The same from the elements of a model's beams.
void IndexEnds(const Model& model, SharedEnds& ends);

// Appends all beams that share an end with this one. The beam itself and one beam several times may
// be among them; the order is not defined.
void AppendSharing(const SharedEnds& ends, std::int32_t beam, std::vector<std::int32_t>& beams);

}  // namespace korvex
