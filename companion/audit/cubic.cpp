#include "audit/cubic.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvx {

double Evaluate(const Cubic& cubic, double s) {
  return cubic[0] + s * (cubic[1] + s * (cubic[2] + s * cubic[3]));
}

void AddFlatPlaces(const Cubic& cubic, std::vector<double>& places) {
  // a s^2 + 2 b s + c = 0, solved without the difference of nearly equal numbers (Press et al.
  // 1992, sec. 5.6). A quotient by zero gives an infinity or a NaN, which is not between 0 and 1.
  const double a = 3.0 * cubic[3], b = cubic[2], c = cubic[1];
  const double discriminant = b * b - a * c;
  if (!(discriminant >= 0.0)) return;
  const double sum = -(b + std::copysign(std::sqrt(discriminant), b));
  const double first = sum / a, second = c / sum;
  const auto isInside = [](double s) { return s > 0.0 && s < 1.0; };
  if (isInside(first)) places.push_back(first);
  if (isInside(second) && second != first) places.push_back(second);
}

Extremes FindExtremes(const Cubic& cubic) {
  std::vector<double> places{0.0};
  AddFlatPlaces(cubic, places);
  places.push_back(1.0);
  std::sort(places.begin(), places.end());
  Extremes extremes{{Evaluate(cubic, 0.0), 0.0}, {Evaluate(cubic, 0.0), 0.0}};
  if (std::isnan(Evaluate(cubic, 1.0))) {
    extremes.smallest.value = extremes.largest.value = std::numeric_limits<double>::quiet_NaN();
    return extremes;
  }
  for (const double s : places) {
    const double value = Evaluate(cubic, s);
    if (value < extremes.smallest.value) extremes.smallest = {value, s};
    if (value > extremes.largest.value) extremes.largest = {value, s};
  }
  return extremes;
}

}  // namespace kvx
