// Cubic polynomials along a beam, and where they are largest and smallest.
//
// c0 + c1 s + c2 s^2 + c3 s^3 with s = x / L from 0 at the first to 1 at the second node. All four
// coefficients have the unit of the quantity itself, so a curve can be drawn without the length.
#pragma once

#include <array>
#include <vector>

namespace kvx {

using Cubic = std::array<double, 4>;  // c0, c1, c2, c3

double Evaluate(const Cubic& cubic, double s);

// Appends the places strictly between 0 and 1 where the slope is zero: none, one or two. A constant
// has none.
void AddFlatPlaces(const Cubic& cubic, std::vector<double>& places);

struct PlacedValue {
  double value = 0.0;
  double s = 0.0;  // 0 .. 1
};

struct Extremes {
  PlacedValue smallest, largest;  // algebraic, the sign counts; of equal ones that of the lowest s
};

// The extremes over 0 <= s <= 1, the ends included. A coefficient that is NaN gives NaNs.
Extremes FindExtremes(const Cubic& cubic);

}  // namespace kvx
