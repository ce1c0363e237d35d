// What the parts of the three-node element share: its area and the mid-side integration rule.
#pragma once

#include <array>

namespace korvex {

using Array3 = std::array<double, 3>;

// |x1 y2 + x2 y3 + x3 y1 - x1 y3 - x2 y1 - x3 y2| / 2
double TriangleArea(const Array3& x, const Array3& y);

// The mid-side points in area coordinates; exact for quadratic functions (Hammer, Marlowe & Stroud
// 1956).
inline constexpr std::array<Array3, 3> MidSidePoints{
    {{0.5, 0.5, 0.0}, {0.0, 0.5, 0.5}, {0.5, 0.0, 0.5}}};
inline constexpr double MidSideWeight = 0.3333333333333333;

}  // namespace korvex
