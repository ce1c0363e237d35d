// Numbers of results as people read them: what is rounding beside the largest is 0.
#pragma once

#include <cmath>

namespace kvx {

// Results are right to about this part of the largest force or moment of a model; smaller numbers
// would only be noise on paper. CSV and JSON keep them.
inline constexpr double RoundingShare = 1e-9;

// scale: the largest of its kind. NaN stays.
inline double TidyNumber(double value, double scale) {
  return std::fabs(value) <= RoundingShare * scale ? 0.0 : value;
}

}  // namespace kvx
