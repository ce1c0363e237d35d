// Numbers of equations in another order: ordered[k] is that of equation equations[k].
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvex {

// ordered: gets as many numbers as there are equations.
inline void GatherNumbers(const std::vector<std::int32_t>& equations,
                          const std::vector<double>& numbers, std::vector<double>& ordered) {
  ordered.resize(equations.size());
  for (std::size_t k = 0; k < equations.size(); ++k) {
    ordered[k] = numbers[static_cast<std::size_t>(equations[k])];
  }
}

// numbers: has room for all equations.
inline void ScatterNumbers(const std::vector<std::int32_t>& equations,
                           const std::vector<double>& ordered, std::vector<double>& numbers) {
  for (std::size_t k = 0; k < equations.size(); ++k) {
    numbers[static_cast<std::size_t>(equations[k])] = ordered[k];
  }
}

}  // namespace korvex
