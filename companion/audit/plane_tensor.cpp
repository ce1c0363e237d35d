#include "audit/plane_tensor.h"

#include <algorithm>
#include <cmath>

#include "base/matrix.h"
#include "results/corner_stress.h"

namespace kvx {

using korvex::ElementFrame, korvex::StressVector, korvex::Vector3;

PrincipalValues FindPrincipalValues(const PlaneTensor& tensor) {
  const auto [x, y, xy] = tensor;
  const double h = x / 2.0 - y / 2.0;  // halved before the difference: it cannot overflow
  const double r = std::hypot(h, xy);
  const double sum = r + std::fabs(h);
  // Multiplied last: the square of a very small or large xy would leave the range of numbers.
  const double d = sum == 0.0 ? 0.0 : xy * (xy / sum);

  PrincipalValues values;
  values.larger = (x < y ? y : x) + d;
  values.smaller = (x < y ? x : y) - d;
  const double largest = std::max({std::fabs(x), std::fabs(y), std::fabs(xy)});
  values.hasDirection = r > DirectionThreshold * largest;
  if (!values.hasDirection) return values;
  values.angle = std::atan2(xy, h) / 2.0;
  // xy = -0 with h < 0 gives -pi/2, which is the direction of +pi/2.
  if (xy == 0.0) values.angle = std::fabs(values.angle);
  return values;
}

StressVector StressInFrame(const ElementFrame& frame, const StressVector& global) {
  ElementFrame inverse;  // of a rotation: the transpose
  korvex::MatTranspose(inverse.data(), frame.data(), 3, 3);
  return korvex::StressToGlobal(inverse, global);
}

Vector3 DirectionAt(const ElementFrame& frame, double angle) {
  const double c = std::cos(angle), s = std::sin(angle);
  return {c * frame[0] + s * frame[1], c * frame[3] + s * frame[4], c * frame[6] + s * frame[7]};
}

}  // namespace kvx
