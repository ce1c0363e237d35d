#include "check/motion_text.h"

#include <algorithm>
#include <cmath>

#include "check/describe.h"

namespace kvx {

using korvex::Vector3;

namespace {

// Components of a unit vector below this are 0 in six digits' company.
constexpr double NoComponent = 1e-6;

// A point whose coordinates near 0 are 0.
std::string AxisPointText(const Body& body, Vector3 point) {
  constexpr double NoLength = 1e-9;
  for (double& value : point) {
    if (std::abs(value) <= NoLength * (body.largest + body.radius)) value = 0.0;
  }
  return PointText(point);
}

// Three turns that share one point, which is the only one that stays: a part on one pin.
bool MeetInOnePoint(const Body& body, const std::vector<RigidMotion>& motions, Vector3& point) {
  if (motions.size() != 3) return false;
  if (std::any_of(motions.begin(), motions.end(),
                  [](const RigidMotion& motion) { return !motion.turns || motion.pitch != 0.0; })) {
    return false;
  }
  // The axes are parallel to x, y and z.
  point = {motions[1].point[0], motions[0].point[1], motions[0].point[2]};
  constexpr double SamePlace = 1e-6;
  const double room =
      SamePlace * (body.radius + korvex::Length(korvex::Subtract(point, body.centroid)));
  return std::abs(motions[1].point[2] - point[2]) <= room &&
         std::abs(motions[2].point[0] - point[0]) <= room &&
         std::abs(motions[2].point[1] - point[1]) <= room;
}

}  // namespace

std::string DirectionText(const Vector3& direction) {
  Vector3 d = direction;
  for (double& value : d) {
    if (std::abs(value) < NoComponent) value = 0.0;
  }
  double first = 0.0;
  for (const double value : d) first = first == 0.0 ? value : first;
  const bool turn = first < 0.0;
  for (double& value : d) value = turn && value != 0.0 ? -value : value;
  for (std::size_t i = 0; i < 3; ++i) {
    if (d[i] != 0.0 && d[(i + 1) % 3] == 0.0 && d[(i + 2) % 3] == 0.0) {
      return std::string(1, static_cast<char>('x' + i));
    }
  }
  return "<" + NumberText(d[0]) + ", " + NumberText(d[1]) + ", " + NumberText(d[2]) + ">";
}

std::string MotionText(const Body& body, const RigidMotion& motion) {
  const std::string along = "along " + DirectionText(motion.direction);
  if (!motion.turns) return "move " + along;
  std::string turn =
      "turn about the line through " + AxisPointText(body, motion.point) + " " + along;
  if (motion.pitch == 0.0) return turn;
  return turn + " like a screw, which moves " + NumberText(std::abs(motion.pitch)) +
         " along it in each radian";
}

std::string MotionsText(const Body& body, const std::vector<RigidMotion>& motions) {
  if (motions.size() == 6) return "move and turn in all directions";
  Vector3 point{};
  if (MeetInOnePoint(body, motions, point)) {
    return "turn about any axis through " + AxisPointText(body, point);
  }
  std::string text;
  for (std::size_t k = 0; k < motions.size(); ++k) {
    if (k > 0) text += k + 1 < motions.size() ? ", " : " and ";
    text += MotionText(body, motions[k]);
  }
  return text;
}

}  // namespace kvx
