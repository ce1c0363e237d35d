// A table of results beside closed forms, each on one mesh.
#pragma once

#include <string>
#include <vector>

namespace korvex::book {

struct Comparison {
  std::string name;
  double reference = 0.0;
  double result = 0.0;
};

// The table in Markdown (FormatTable): name, reference, result, result / reference.
std::string FormatComparisons(const std::vector<Comparison>& comparisons);

}  // namespace korvex::book
