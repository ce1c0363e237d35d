// Results beside closed forms, without a row of meshes.
#pragma once

#include <string>
#include <vector>

namespace korvex::book {

struct Comparison {
  std::string name;
  double reference = 0.0;
  double result = 0.0;
};

// A table: name, reference, result, result / reference.
std::string WriteComparisons(const std::vector<Comparison>& comparisons);

}  // namespace korvex::book
