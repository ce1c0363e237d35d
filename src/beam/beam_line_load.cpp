// Local axes, with q = q1 at the first and q2 at the second node:
//   Fz1 = (7 q1 + 3 q2) L / 20      My1 = -(3 q1 + 2 q2) L^2 / 60
//   Fz2 = (3 q1 + 7 q2) L / 20      My2 =  (2 q1 + 3 q2) L^2 / 60
#include "beam/beam_line_load.h"

#include <array>

#include "base/matrix.h"
#include "beam/beam_frame.h"

namespace korvex {

void BeamLineLoadVector(const BeamElement& beam, const BeamLineLoad& load, double* f) {
  constexpr std::int32_t dofs = 12;
  BeamFrame frame;
  BeamMatrix T, Tt;
  ComputeBeamFrame(beam, frame);
  BuildBeamRotation(frame, T);
  MatTranspose(Tt.data(), T.data(), dofs, dofs);

  const double L = BeamLength(beam);
  const double q1 = load.q[0];
  const double q2 = load.q[1];
  std::array<double, 12> local{};
  local[2] = 0.15 * q2 * L + 0.35 * q1 * L;
  local[4] = -q1 * (L * L) / 20.0 - q2 * (L * L) / 30.0;
  local[8] = 0.35 * q2 * L + 0.15 * q1 * L;
  local[10] = q2 * (L * L) / 20.0 + q1 * (L * L) / 30.0;

  MatMultiply(f, Tt.data(), local.data(), dofs, dofs, 1);
}

}  // namespace korvex
