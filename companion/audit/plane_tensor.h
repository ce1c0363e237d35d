// Symmetric tensors in the plane of a shell: stresses, membrane forces and moments; their principal
// values; and stresses turned between global axes and a frame.
//
// The principal values are closed formulas without cancellation. With h = (x - y) / 2 and
// r = sqrt(h^2 + xy^2) they are max(x, y) + d and min(x, y) - d, d = r - |h| = xy^2 / (r + |h|);
// the direction of the larger one is at the angle atan2(xy, h) / 2 (Timoshenko & Goodier 1970,
// sec. 7).
#pragma once

#include "base/vector3.h"
#include "shell/shell_element.h"

namespace kvx {

// The components along the first and second axis of a frame, and the shear or twist between them.
struct PlaneTensor {
  double x = 0.0, y = 0.0, xy = 0.0;
};

struct PrincipalValues {
  double larger = 0.0, smaller = 0.0;
  // Of the larger one, from the first axis towards the second: radians, above -pi/2 up to pi/2. The
  // smaller one acts at right angles to it. 0 where there is no direction.
  double angle = 0.0;
  // False where both values are equal, to the digits of a solution: every direction is a principal
  // one. False for NaN.
  bool hasDirection = false;
};

// Half the difference of the principal values, as a part of the largest component, from which on
// they have a direction. The last four digits of a double are the rounding of the solution.
inline constexpr double DirectionThreshold = 1e-12;

// NaN components give NaN values and the angle 0; infinite ones no direction.
PrincipalValues FindPrincipalValues(const PlaneTensor& tensor);

// The components of `global` along the frame's axes, which are its columns: R^T sigma R. The
// opposite of korvex::StressToGlobal.
korvex::StressVector StressInFrame(const korvex::ElementFrame& frame,
                                   const korvex::StressVector& global);

// The components in the plane of the frame's first two axes. Out of a stress on a face of a flat
// shell in the shell's frame nothing is lost: it is a plane stress.
inline PlaneTensor PlaneOf(const korvex::StressVector& local) {
  return {local[0], local[1], local[3]};
}

// The global unit vector in the frame's plane at this angle from its first axis.
korvex::Vector3 DirectionAt(const korvex::ElementFrame& frame, double angle);

}  // namespace kvx
