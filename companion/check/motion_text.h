// Rigid-body motions in words.
#pragma once

#include <string>
#include <vector>

#include "check/rigid_motions.h"

namespace kvx {

// "x", "<0.6, 0.8, 0>": a unit vector; global axes are named. Its sign is that of its first
// component other than 0, made positive.
std::string DirectionText(const korvex::Vector3& direction);

// "move along y and turn about the line through (0, 0, 3) along <0.6, 0.8, 0>".
// body: what moves; lengths below a billionth of it are written as 0.
std::string MotionText(const Body& body, const RigidMotion& motion);
std::string MotionsText(const Body& body, const std::vector<RigidMotion>& motions);

}  // namespace kvx
