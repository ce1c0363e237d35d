// Sine and cosine to the last bit, for the points of a circle.
//
// C libraries differ in the last bits of sin and cos, and result files must not. The angle is
// reduced by multiples of pi / 2 and the Taylor series are summed in double-double arithmetic,
// about 32 digits (Dekker 1971; Knuth 1998, sec. 4.2.2), to 29 digits; the head of the sum is the
// rounded value. It is slow, and meant for the few angles of an outline.
#pragma once

namespace korvex {

struct SineCosine {
  double sine;
  double cosine;
};

// angle: radians, 0 <= angle < 7. Each value is the double nearest to the function at the double
// `angle` (so the cosine at the double next to pi / 2 is 6.1e-17, not zero), unless the function
// lies so near to the middle between two doubles that a relative error of 1e-29 decides, one value
// in some 5e12. Then it may be the other of the two.
SineCosine ComputeSineCosine(double angle);

}  // namespace korvex
