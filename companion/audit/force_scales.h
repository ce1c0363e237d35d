// What forces and moments are compared with, and the dof where a comparison is worst.
//
// The scales are the largest force and moment at the end of any element, or applied to any node. An
// element of the size l counts with its forces as moments l F, and with its moments as forces M /
// l: where one kind vanishes, what is left of it is rounding of the other.
#pragma once

#include <cstdint>
#include <vector>

#include "audit/end_forces.h"

namespace kvx {

struct ForceScales {
  double force = 0.0, moment = 0.0;
};

// A number at a dof.
struct DofValue {
  double value = 0.0;                // with its sign
  double relative = 0.0;             // |value| over the scale of its kind; NaN: not to be compared
  std::int32_t node = -1, dof = -1;  // -1: there is none
};

// The larger of |a| and |b|; NaN if one of them is.
double LargerMagnitude(double a, double b);

// |part| / whole; 0 where the part is; NaN where a number is not finite.
double RatioOf(double part, double whole);

// forces: 6 for each of the element's nodes.
void RaiseScales(const korvex::Model& model, const ElementRef& element, const double* forces,
                 ForceScales& scales);

// The dof whose value is largest over its scale; the first whose comparison gives NaN, if there is
// one. values: six to a node. skipped: where it is 1 a value is left out; null: all count.
DofValue FindLargestDof(const std::vector<double>& values, const ForceScales& scales,
                        const std::vector<std::uint8_t>* skipped);

}  // namespace kvx
