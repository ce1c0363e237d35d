// Three-vectors in global axes: the few operations that element frames are made of.
//
// Each sum runs over x, y, z in this order. A length is the square root of the sum of squares, not
// hypot, whose last bit differs between C libraries.
#pragma once

#include <array>
#include <cmath>

namespace korvex {

using Vector3 = std::array<double, 3>;  // x, y, z

inline Vector3 Subtract(const Vector3& a, const Vector3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline Vector3 Cross(const Vector3& a, const Vector3& b) {
  return {a[1] * b[2] - a[2] * b[1],   //
          a[2] * b[0] - a[0] * b[2],   //
          a[0] * b[1] - a[1] * b[0]};  // a x b
}

inline double Length(const Vector3& a) {
  return std::sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]);
}

// a / |a|; a zero vector gives NaNs.
inline Vector3 Normalise(const Vector3& a) {
  const double length = Length(a);
  return {a[0] / length, a[1] / length, a[2] / length};
}

}  // namespace korvex
