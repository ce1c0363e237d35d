// The sums of a model's loads: force, moment about the global origin, and line of action.
//
// Forces, and the equivalent nodal loads of pressures and line loads as the solver forms them
// (shell/shell_loads.h, beam/beam_line_load.h). Prescribed displacements are no loads. Any system
// of forces is a force along the central axis and a couple about it (Poinsot 1803): the axis goes
// through F x M / F^2, the couple is M . F / |F|.
#pragma once

#include <array>

#include "check/fixed_dofs.h"

namespace kvx {

struct LoadSums {
  std::array<double, 6> sums{};  // Fx, Fy, Fz, Mx, My, Mz about the global origin
  // Where the force is not 0 beside the single loads:
  bool hasLine = false;
  korvex::Vector3 point{};      // of the line of action, the nearest to the origin
  korvex::Vector3 direction{};  // unit vector
  double couple = 0.0;          // about the line of action; 0 for forces in a plane
};

// Rows that refer to nothing, are lost, or act on elements without known nodes count nowhere, and
// neither do loads that are not finite.
void SumLoads(const CheckedModel& model, const FixedDofs& dofs, LoadSums& sums);

}  // namespace kvx
