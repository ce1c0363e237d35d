#include "shell/triangle.h"

#include <cmath>

namespace korvex {

double TriangleArea(const Array3& x, const Array3& y) {
  return std::fabs(x[0] * y[1] + x[1] * y[2] + x[2] * y[0] - x[0] * y[2] - x[1] * y[0] -
                   x[2] * y[1]) /
         2.0;
}

}  // namespace korvex
