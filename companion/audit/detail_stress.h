// The largest von Mises stress of a beam's detail model at mid-length, where alone it is trusted.
//
// Averaged corner stresses of the run (beamshell/average_corners.h) at the middle station. With an
// odd number of steps there is none: the components at the stations beside it are averaged, face by
// face, before the von Mises stress is formed.
//
// The detail model does not see line loads between its ends (beam_advice.h).
#pragma once

#include <cstdint>

#include "model/beam_shell_model.h"

namespace kvx {

struct DetailStress {
  double vonMises = 0.0;   // NaN where there is no detail model or a stress is not a number
  std::int32_t steps = 0;  // along the beam
  std::int32_t plate = 0;  // segment of the outline, 0-based
  std::int32_t point = 0;  // outline point at the plate's edge, 0-based
  bool upper = false;      // face A, on the side of the shells' normals
};

DetailStress FindDetailStress(const korvex::BeamShellModel& detail);

}  // namespace kvx
