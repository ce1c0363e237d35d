// Axes that a deck gives by points, and angles in degrees.
#pragma once

#include <array>

#include "base/vector3.h"

namespace kvx {

using AbaqusAxes = std::array<korvex::Vector3, 3>;  // x', y', z' in global axes, of length 1

// The axes of a rectangular system: x' towards `onX`, y' in the plane of x' and `inPlane`, both
// seen from the origin. Returns false where they give no plane.
bool MakeAxes(const korvex::Vector3& onX, const korvex::Vector3& inPlane, AbaqusAxes& axes);

// The sum of a vector's components times the axes.
korvex::Vector3 Combine(const AbaqusAxes& axes, const korvex::Vector3& components);

inline double Dot(const korvex::Vector3& a, const korvex::Vector3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline korvex::Vector3 Add(const korvex::Vector3& a, const korvex::Vector3& b) {
  return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

inline korvex::Vector3 Scale(double factor, const korvex::Vector3& a) {
  return {factor * a[0], factor * a[1], factor * a[2]};
}

// Lengths below this share of the vectors they are made of count as none: the directions are
// parallel as far as the digits of a deck can say.
inline constexpr double ParallelShare = 1e-6;

}  // namespace kvx
