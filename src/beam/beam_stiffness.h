// The stiffness of a two-node shear-deformable space beam with a rigid offset to its centroid.
//
// Przemieniecki (1968), sec. 5.6: axial force, torsion and bending in two planes, uncoupled, with
// the shear parameters Phi_y (x-z plane) and Phi_z (x-y plane). The nodes lie on the node line; the
// beam's axis runs through the centroid: K = T^T B^T K_local B T with the eccentricity B and the
// rotation T. No warping torsion, no shear-centre offset. Dofs u, v, w, rx, ry, rz of the first,
// then of the second node.
#pragma once

#include "beam/beam_element.h"

namespace korvex {

// K: BeamDofs x BeamDofs = 12 x 12, row-major, global axes, written completely. A zero length or an
// orientation vector along the axis gives NaNs.
void BeamStiffness(const BeamElement& beam, double* K);

}  // namespace korvex
