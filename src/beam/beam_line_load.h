// The equivalent nodal loads of a trapezoidal line load on a beam element.
//
// Fixed-end values of a slender beam under a load in local z that varies linearly from q1 to q2
// (Roark 1989, table 3, case 2d). Shear deformation does not enter them. They act at the nodes: the
// offset from node to centroid, which the stiffness includes, is deliberately not applied.
#pragma once

#include "beam/beam_element.h"

namespace korvex {

// f: 12, global axes, u, v, w, rx, ry, rz of the first, then of the second node, written
// completely. A zero length or an orientation vector along the axis gives NaNs.
void BeamLineLoadVector(const BeamElement& beam, const BeamLineLoad& load, double* f);

}  // namespace korvex
