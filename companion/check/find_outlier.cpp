#include "check/find_outlier.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kvx {

namespace {

struct Rule {
  double factor;
  double gap;          // the value is at least so far from the nearest other one
  double spread;       // the largest of the other values over their smallest
  double slack;        // the value, divided by the factor, lies within theirs, so much widened
  std::size_t others;  // so many of them, at least
  bool exact;          // the value, divided by the factor, is one of theirs
};

constexpr std::array<Rule, 4> Rules{{{1000.0, 100.0, 20.0, 1.5, 2, false},
                                     {100.0, 30.0, 5.0, 1.5, 2, false},
                                     {25.4, 12.0, 3.0, 1.05, 3, false},
                                     {10.0, 5.0, 3.0, 1.0, 3, true}}};

// Six digits, as they stand in files.
bool IsEqual(double a, double b) { return std::fabs(a - b) <= 1e-6 * std::fabs(b); }

// others: ascending.
bool Applies(const Rule& rule, double value, bool isTooLarge, const std::vector<double>& others) {
  const double low = others.front(), high = others.back();
  const double scaled = isTooLarge ? value / rule.factor : value * rule.factor;
  const double gap = isTooLarge ? value / high : low / value;
  if (others.size() < rule.others || gap < rule.gap || high > rule.spread * low) return false;
  if (rule.exact) {
    return std::any_of(others.begin(), others.end(),
                       [&](double other) { return IsEqual(scaled, other); });
  }
  return scaled >= low / rule.slack && scaled <= high * rule.slack;
}

}  // namespace

Outlier FindOutlier(const std::vector<double>& values) {
  Outlier outlier;
  if (values.size() < 3) return outlier;
  // Only the largest and the smallest can be alone.
  for (const bool isTooLarge : {true, false}) {
    const auto at = isTooLarge ? std::max_element(values.begin(), values.end())
                               : std::min_element(values.begin(), values.end());
    std::vector<double> others(values.begin(), at);
    others.insert(others.end(), at + 1, values.end());
    std::sort(others.begin(), others.end());
    for (const Rule& rule : Rules) {
      if (!Applies(rule, *at, isTooLarge, others)) continue;
      outlier.index = static_cast<std::size_t>(at - values.begin());
      outlier.factor = rule.factor;
      outlier.isTooLarge = isTooLarge;
      return outlier;
    }
  }
  return outlier;
}

}  // namespace kvx
