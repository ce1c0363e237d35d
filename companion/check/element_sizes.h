// How large the elements are that use a thickness or a section.
#pragma once

#include <array>
#include <vector>

#include "check/checked_model.h"

namespace kvx {

// The smallest and the largest element of a row; 0 where no sound element uses it.
struct SizeRange {
  double smallest = 0.0, largest = 0.0;
};

struct ElementSizes {
  std::vector<SizeRange> thicknesses;              // [NTK] longest edges of shells
  std::array<std::vector<SizeRange>, 3> sections;  // [BeamSecType][row] lengths of beams
  double extent = 0.0;                             // the diagonal of the box of all sound elements
};

void MeasureElements(const CheckedModel& model, ElementSizes& sizes);

}  // namespace kvx
