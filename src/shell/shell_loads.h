// The equivalent nodal loads of a pressure on a shell element.
//
// The pressure acts along e3 and is a linear function of the local coordinates, given by its
// intensities at nodes 1, 2 and 3. The nodal forces are the integrals of N q; there are no nodal
// moments.
#pragma once

#include "shell/shell_element.h"

namespace korvex {

// f: 24, global axes, element dof order, written completely. The intensity at node 4 is
// extrapolated from the first three nodes, so a hydrostatic pressure is exact. If these nodes are
// collinear, the result is not finite.
void Shell4LoadVector(const Shell4Element& element, const ShellSurfaceLoad& load, double* f);

// f: 18, global axes, element dof order, written completely.
void Shell3LoadVector(const Shell3Element& element, const ShellSurfaceLoad& load, double* f);

}  // namespace korvex
