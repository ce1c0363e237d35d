#include "mesh/sine_cosine.h"

#include <cmath>

namespace kvx {

namespace {

// The power series; up to 45 degrees the terms left out are below the last bit.
SineCosine SeriesOf(double radians) {
  constexpr int Terms = 24;
  SineCosine sums{0.0, 0.0};
  double term = 1.0;  // radians^k / k!
  for (int k = 0; k < Terms; ++k) {
    const double signedTerm = k % 4 < 2 ? term : -term;
    (k % 2 == 0 ? sums.cosine : sums.sine) += signedTerm;
    term = term * radians / (k + 1);
  }
  return sums;
}

}  // namespace

SineCosine SineCosineOfDegrees(double degrees) {
  constexpr double RadiansOfDegree = 0.017453292519943295;  // pi / 180
  const double turned = std::fmod(degrees, 360.0);          // exact
  const int quarters = static_cast<int>(std::lround(turned / 90.0));
  const SineCosine part = SeriesOf((turned - 90.0 * quarters) * RadiansOfDegree);
  switch ((quarters + 8) % 4) {
    case 0:
      return part;
    case 1:
      return {part.cosine, -part.sine};
    case 2:
      return {-part.sine, -part.cosine};
    default:
      return {-part.cosine, part.sine};
  }
}

}  // namespace kvx
