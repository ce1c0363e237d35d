// The local axes of a beam element.
//
//   d = NodeJ - NodeI;  v = RefPoint - NodeI (the orientation vector);  c = v x d
//   x = d / |d|,  y = c / |c|,  z = (d x c) / |d x c|
//
// So z is the part of the orientation vector perpendicular to the axis, and x, y, z is
// right-handed. A zero length, or an orientation vector along the axis, gives NaNs.
#pragma once

#include <array>

#include "beam/beam_element.h"

namespace korvex {

// 3 x 3, row-major; the rows are local x, y, z in global components.
using BeamFrame = std::array<double, 9>;

// 12 x 12, row-major.
using BeamMatrix = std::array<double, 144>;

// |NodeJ - NodeI|.
double BeamLength(const BeamElement& beam);

// Fills `frame` from the vector d along the axis and the orientation vector v, both global.
void ComputeBeamFrame(const Vector3& d, const Vector3& v, BeamFrame& frame);

// The same from NodeI, NodeJ and RefPoint.
void ComputeBeamFrame(const BeamElement& beam, BeamFrame& frame);

// T: 12 x 12, row-major, written completely: four diagonal blocks equal to `frame`, zeros
// elsewhere. local = T * global for the dofs u, v, w, rx, ry, rz of the first, then of the second
// node.
void BuildBeamRotation(const BeamFrame& frame, BeamMatrix& T);

}  // namespace korvex
