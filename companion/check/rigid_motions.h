// The rigid-body motions that supports leave to a part, by the rank of the constraint matrix.
//
//   u(p) = t + w x (p - o),  theta = w;  one row for each fixed dof, columns t and s w
//
// o: the middle of the supports, s: their distance from it. A motion is free where its singular
// value is not above what the rounding of the coordinates can make of zero: supports that were
// meant to lie in an oblique line do so within some units in the last place (Weyl's inequality,
// Golub & Van Loan 2013, sec. 8.6). The rows are reduced by Givens rotations to a triangle of
// order 6, its singular values found by one-sided Jacobi rotations (sec. 5.1, 8.6).
#pragma once

#include <cstdint>
#include <vector>

#include "base/vector3.h"

namespace kvx {

// A motion along a direction, or about an axis (a screw where the pitch is not 0).
struct RigidMotion {
  bool turns = false;
  korvex::Vector3 direction{};  // unit vector, global: of the translation or of the axis
  korvex::Vector3 point{};      // a point of the axis, model units
  double pitch = 0.0;           // what it moves along the axis for each radian
};

// The nodes of a part, in short.
struct Body {
  korvex::Vector3 centroid{};
  double radius = 0.0;   // of gyration about the centroid
  double largest = 0.0;  // the largest coordinate: it decides how exact all of them are
};

struct SupportPoint {
  korvex::Vector3 place{};
  std::uint8_t fixed = 0;  // bit d: dof d is fixed
};

struct Holding {
  std::vector<RigidMotion> freeMotions;  // translations first; 0 to 6
  // Where nothing is free: the motion that is held worst, and by how much: the root mean square of
  // the displacements at the supports, over that of the part's nodes. 1 where a node is clamped.
  RigidMotion weakest;
  double grip = 1.0;
};

// body, supports: finite, not beyond 1e150.
void FindFreeMotions(const Body& body, const std::vector<SupportPoint>& supports, Holding& holding);

// The motion with this displacement at the centroid and this rotation, not both 0.
RigidMotion MakeRigidMotion(const Body& body, const korvex::Vector3& displacement,
                            const korvex::Vector3& rotation);

}  // namespace kvx
