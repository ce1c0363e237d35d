// Words for where a set of places lies: on a line, on a curve, within a box.
#pragma once

#include <string>
#include <vector>

#include "base/vector3.h"

namespace kvx {

enum class PlaceShape {
  Line,    // a path; the words find out whether it is straight
  Closed,  // a path that returns to its beginning
  Patch,   // an area
};

// "at (0, 3000, 1200)", "along y = 3000, z = 1200, x = 0 .. 9600",
// "along a line from (0, 0, 0) to (50, 80, 0)", "along a curve from (0, 0, 0) to (50, 80, 0)",
// "along a closed curve within x = -1 .. 1, y = -1 .. 1, z = 0",
// "over a patch within x = 0 .. 1, y = 0 .. 1, z = 0".
// tolerance: places whose coordinates differ by less are on one line.
std::string DescribePlaces(const std::vector<korvex::Vector3>& places, PlaceShape shape,
                           double tolerance);

// "x = 0 .. 1, y = 0 .. 1, z = 0": the box round all places.
std::string DescribeExtent(const std::vector<korvex::Vector3>& places, double tolerance);

}  // namespace kvx
