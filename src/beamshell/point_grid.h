// A spatial hash: finds the points that may lie near a given point.
//
// Space is divided into cubic cells, the cells are hashed into buckets, and each bucket lists its
// points. A search examines the cells that a small box around the given point touches. It may also
// return points that are not near, because cells share buckets: the caller checks the distance.
#pragma once

#include <cstddef>
#include <vector>

#include "base/vector3.h"

namespace korvex {

struct PointGrid {
  std::vector<std::size_t> first;   // [buckets + 1] where a bucket's points begin in `points`
  std::vector<std::size_t> points;  // point indices, bucket after bucket
};

// Whether all three coordinates are finite. Other points cannot be in a grid.
bool IsFinite(const Vector3& point);

// Fills `grid` with all points whose coordinates are finite.
void BuildPointGrid(const std::vector<Vector3>& points, PointGrid& grid);

// Appends to `found` the indices of all points within CoincidenceTolerance of `point`, and perhaps
// of other points. The order is not defined, and an index may occur more than once. The coordinates
// of `point` must be finite.
void FindNear(const PointGrid& grid, const Vector3& point, std::vector<std::size_t>& found);

// Points closer than this coincide. In model units: it is not scaled with the model.
inline constexpr double CoincidenceTolerance = 0.001;

// Half the edge of the box that a search covers: the tolerance and a margin for rounding. For
// coordinates so large that their last digit exceeds the margin, near points have equal
// coordinates.
inline constexpr double Reach = 1.5 * CoincidenceTolerance;

}  // namespace korvex
