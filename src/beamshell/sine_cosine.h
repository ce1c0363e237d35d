// Sine and cosine to the last bit, for the points of a circle.
//
// C libraries differ in the last bits of sin and cos, but result files must not differ. The angle
// is reduced by a multiple of pi / 2, and the Taylor series is summed to 29 digits in double-double
// arithmetic, which has about 32 digits (Dekker 1971; Knuth 1998, sec. 4.2.2). The head of the sum
// is the rounded value. The method is slow; it is used for the few angles of a tube's outline.
#pragma once

namespace korvex {

struct SineCosine {
  double sine;
  double cosine;
};

// angle: radians, 0 <= angle < 7. Each value is the double nearest to the function of the double
// `angle`; so the cosine of the double nearest to pi / 2 is 6.1e-17, not zero. Exception: if the
// function is within a relative error of 1e-29 of the middle between two doubles, about one value
// in 5e12, the result may be the other of the two.
SineCosine ComputeSineCosine(double angle);

}  // namespace korvex
