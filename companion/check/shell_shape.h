// The shape of one shell, judged from its nodes alone: K115 .. K120.
//
// The solver projects a quadrilateral on the plane of its nodes 1, 2 and 4 and takes the absolute
// value of the Jacobian's determinant. Its sign is that of the sine of the angle at each corner:
// two negative corners are crossing edges, one or three a re-entrant corner (three: at node 1, from
// which the plane's axes are taken). All bounds are ratios, equal for mm and m; only what rounding
// leaves beside the coordinates is compared with these.
#pragma once

#include <array>
#include <cstddef>

#include "base/vector3.h"

namespace kvx {

// The solver cannot take those before Warped.
enum class ShapeFault {
  None,
  SamePlace,  // two nodes next to each other are at the same place: corner, corner + 1
  NoArea,     // all nodes on a line, or nearly
  Crossing,
  Concave,    // re-entrant at `corner`
  InLine,     // the edges at `corner` lie on one line
  Warped,     // measure: distance of node 3 from the plane of nodes 1, 2, 4
  Skewed,     // measure: the angle at `corner`, degrees
  Elongated,  // measure: longest edge / (area / longest edge)
};

struct ShellShape {
  ShapeFault fault = ShapeFault::None;
  std::size_t corner = 0;  // 0 .. 3
  double measure = 0.0;
  double size = 0.0;  // of warped ones: the square root of the area
};

// A distance, area or sine below this share of the longest edge (its square; 1) is none: the
// element's stiffness then keeps less than half of its digits.
inline constexpr double NoShare = 1e-6;

// The sharpest and the bluntest angle. Meshes are usually held within 30 .. 150 degrees. Beyond
// these bounds an element's stresses are mere noise, and no mesh generator makes such elements.
inline constexpr double SharpestAngle = 10.0;  // degrees
inline constexpr double BluntestAngle = 170.0;

// Long elements are right where stresses change slowly along them, as in strips; meshes are usually
// held below 10 or 20.
inline constexpr double LargestElongation = 100.0;

// What node 3 stands off the plane, as a share of the root of the area. The solver drops it: the
// neighbours' edges no longer meet, by this share of their length. Twisted and double-curved meshes
// that are fine enough for their curvature stay below a tenth. A distance within the plate's own
// thickness says nothing.
inline constexpr double LargestWarp = 0.15;

// thickness: 0 where it is not known.
ShellShape JudgeQuad(const std::array<korvex::Vector3, 4>& nodes, double thickness);
ShellShape JudgeTriangle(const std::array<korvex::Vector3, 3>& nodes);

}  // namespace kvx
