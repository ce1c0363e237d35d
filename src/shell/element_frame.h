// The local frame of a flat shell element, from its first edge and the edge to its last node.
//
//   a = P2 - P1,  b = Plast - P1;   e1 = a / |a|,  e3 = (a x b) / |a x b|,  e2 = (n x a) / |n x a|
//
// with n = a x b; Plast is the fourth node of a quadrilateral and the third of a triangle. Nothing
// is checked: coincident nodes give non-finite entries.
#pragma once

#include <array>

#include "base/vector3.h"

namespace korvex {

// 3 x 3, row-major; row r holds the r-th global component of e1, e2, e3, so the columns are the
// unit local axes in global components.
template <typename Number>
using FrameOf = std::array<Number, 9>;
using ElementFrame = FrameOf<double>;

// Fills `frame` from the global positions of the first, second and last node.
void ComputeElementFrame(const Vector3& p1, const Vector3& p2, const Vector3& pLast,
                         ElementFrame& frame);

}  // namespace korvex
