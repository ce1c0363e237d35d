#include "audit/shell_frame.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/number_text.h"
#include "report/stop.h"

namespace kvx {

using korvex::ElementFrame, korvex::Vector3;

namespace {

[[noreturn]] void StopOnAxis(const Vector3& axis) {
  std::string text = "The axis (";
  for (std::size_t i = 0; i < 3; ++i) {
    korvex::NumberBuffer buffer;
    text.append(i > 0 ? ", " : "").append(korvex::FormatNumber(axis[i], buffer));
  }
  throw korvex::Stop{korvex::StopKind::Notice, text + ") has no direction."};
}

// The axis with unit length. The largest component is divided out first: the square of a number
// beyond 1e154 is infinite.
Vector3 UnitAxis(const Vector3& axis) {
  const double largest = std::max({std::fabs(axis[0]), std::fabs(axis[1]), std::fabs(axis[2])});
  const bool isFinite = std::isfinite(axis[0]) && std::isfinite(axis[1]) && std::isfinite(axis[2]);
  if (!isFinite || largest == 0.0) StopOnAxis(axis);
  return korvex::Normalise({axis[0] / largest, axis[1] / largest, axis[2] / largest});
}

// Whether the unit vector `axis` has a projection that is long enough; `axes` is then the frame.
bool ProjectAxis(const Vector3& e3, const Vector3& axis, ElementFrame& axes) {
  // |e3 x axis| is the length of the projection, without the cancellation of axis - (axis . e3) e3.
  const Vector3 across = korvex::Cross(e3, axis);
  if (korvex::Length(across) <= NormalAxisSine) return false;
  const Vector3 second = korvex::Normalise(across);
  const Vector3 first = korvex::Normalise(korvex::Cross(second, e3));
  for (std::size_t r = 0; r < 3; ++r) {
    axes[3 * r] = first[r];
    axes[3 * r + 1] = second[r];
    axes[3 * r + 2] = e3[r];
  }
  return true;
}

}  // namespace

ShellFrame MakeShellFrame(const ElementFrame& own, const FrameChoice& choice) {
  ShellFrame frame{own, FrameSource::Element};
  if (!choice.byAxis) return frame;
  const Vector3 axis = UnitAxis(choice.axis);
  const Vector3 e3{own[2], own[5], own[8]};
  frame.source = FrameSource::Axis;
  if (ProjectAxis(e3, axis, frame.axes)) return frame;
  frame.source = FrameSource::GlobalX;
  if (ProjectAxis(e3, {1.0, 0.0, 0.0}, frame.axes)) return frame;
  frame.source = FrameSource::GlobalY;
  ProjectAxis(e3, {0.0, 1.0, 0.0}, frame.axes);
  return frame;
}

}  // namespace kvx
