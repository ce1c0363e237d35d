// A spatial hash: finds the few among many points that may lie near a given one.
//
// Space is cut into cubic cells, the cells are hashed into buckets, and each bucket lists its
// points. A search looks into the cells that a small box around the given point touches. It may
// also return points that are not near, because cells share buckets: the caller measures.
#pragma once

#include <cstddef>
#include <vector>

#include "base/vector3.h"

namespace korvex {

struct PointGrid {
  std::vector<std::size_t> first;   // [buckets + 1] where a bucket's points begin in `points`
  std::vector<std::size_t> points;  // point indices, bucket after bucket
};

// Whether all three coordinates are finite. Other points have no place in a grid.
bool HasPlace(const Vector3& point);

// Sorts those of `points` that have a place into `grid`.
void BuildPointGrid(const std::vector<Vector3>& points, PointGrid& grid);

// Appends to `found` the indices of all points within CoincidenceTolerance of `point`, which must
// have a place, and perhaps of others; in no order, and an index may occur more than once.
void FindNear(const PointGrid& grid, const Vector3& point, std::vector<std::size_t>& found);

// Points closer than this are one. In model units, whatever these are.
inline constexpr double CoincidenceTolerance = 0.001;

}  // namespace korvex
