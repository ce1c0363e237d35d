// Whether numbers are finite: neither infinite nor NaN.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace korvex {

// values: `count` of them.
inline bool AreFinite(const double* values, std::size_t count) {
  return std::all_of(values, values + count, [](double value) { return std::isfinite(value); });
}

}  // namespace korvex
