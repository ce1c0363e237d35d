// The place that an element takes in space: a beam's axis, a triangle, the bilinear surface of a
// quadrilateral; for the search of what touches it.
#pragma once

#include <array>
#include <cstddef>

#include "check/checked_model.h"
#include "check/node_tree.h"

namespace kvx {

// The points p with low <= n . p <= high.
struct Slab {
  korvex::Vector3 n{};
  double low = 0.0, high = 0.0;
};

// An element's nodes, and a convex region round it: a box along the axes, and slabs.
struct ElementRegion {
  std::array<korvex::Vector3, 4> corners{};
  std::size_t cornerCount = 0;
  double tolerance = 0.0;
  Box box;
  std::array<Slab, 5> slabs{};
  std::size_t slabCount = 0;
};

// corners: 2 of a beam, 3 or 4 of a shell, in their order; all coordinates finite. The region
// reaches `tolerance` farther than the element.
void MakeRegion(const std::array<korvex::Vector3, 4>& corners, std::size_t cornerCount,
                double tolerance, ElementRegion& region);

// Whether the region may have points in the box. Sure where the answer is no.
bool MayMeet(const ElementRegion& region, const Box& box);

// Where a point touches an element.
struct Touch {
  bool touches = false;
  int edge = -1;  // between the corners edge and edge + 1; -1: inside the shell
};

// Whether the point is nearer than the tolerance to the element, but not to one of its corners.
// A quadrilateral must be convex. A beam's only edge is 0.
Touch FindTouch(const ElementRegion& region, const korvex::Vector3& point);

}  // namespace kvx
