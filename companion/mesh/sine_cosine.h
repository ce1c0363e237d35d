// Sine and cosine without the C library, whose last bit differs between systems.
#pragma once

namespace kvx {

struct SineCosine {
  double sine = 0.0, cosine = 1.0;
};

// Of an angle in degrees. Quarter turns are taken off first, which is exact.
SineCosine SineCosineOfDegrees(double degrees);

}  // namespace kvx
