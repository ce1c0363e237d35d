// The area of the three-node element and its mid-side integration rule.
//
// Area coordinates L1, L2, L3 with L1 + L2 + L3 = 1: Lk is 1 at corner k and 0 on the opposite
// edge. The rule is exact for quadratic functions (Hammer, Marlowe & Stroud 1956).
#pragma once

#include <array>

namespace korvex {

using Array3 = std::array<double, 3>;

// Returns |x1 y2 + x2 y3 + x3 y1 - x1 y3 - x2 y1 - x3 y2| / 2. x, y: local corner coordinates.
double TriangleArea(const Array3& x, const Array3& y);

// The mid-side points in area coordinates, and the weight of each; the area is a factor besides.
inline constexpr std::array<Array3, 3> MidSidePoints{
    {{0.5, 0.5, 0.0}, {0.0, 0.5, 0.5}, {0.5, 0.0, 0.5}}};
inline constexpr double MidSideWeight = 0.3333333333333333;

}  // namespace korvex
