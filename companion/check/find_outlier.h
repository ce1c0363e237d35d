// One value of a column that is out of line with all others by a factor as of a mistaken unit or
// digit: 1000 (mm and m), 100 (cm and m), 25.4 (inch and mm), 10 (a digit).
//
// Real tables have plates of 5 and 50 mm, and girders ten times as deep as their stiffeners. So the
// smaller the factor, the closer together the other values must be, and the more of them. A factor
// of 10 counts only where a tenth (or ten times) of the value stands in the table exactly.
#pragma once

#include <cstddef>
#include <vector>

namespace kvx {

struct Outlier {
  std::size_t index = 0;
  double factor = 0.0;  // 10, 25.4, 100 or 1000; 0: there is none
  bool isTooLarge = false;
};

// values: all positive, three or more, otherwise there is no outlier.
Outlier FindOutlier(const std::vector<double>& values);

}  // namespace kvx
