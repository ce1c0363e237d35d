// The axes in which the forces, moments and stresses of a shell are given: those of the element, or
// those of a direction.
//
// The third axis is the element's normal e3 in every frame: the upper face lies on its side. With
// an axis (x, y, z), the first axis of the frame is its projection on the element's plane, the
// second is e3 x first. So the frames of neighbours agree, whatever the order of their nodes. Where
// a neighbour's normal points to the other side, the second axis does, too: its nxy, mx, my and qx
// have the opposite sign, its nx, ny, mxy and qy the same.
#pragma once

#include "base/vector3.h"
#include "shell/element_frame.h"

namespace kvx {

// What the first axis of a frame is.
enum class FrameSource {
  Element,  // the element's e1, from its first node to its second
  Axis,     // the projection of the given axis
  GlobalX,  // the projection of global x, because the given axis is normal to the shell
  GlobalY,  // the projection of global y, because global x is normal to the shell as well
};

struct ShellFrame {
  korvex::ElementFrame axes{};  // as ElementFrame: the columns are the axes, global, unit length
  FrameSource source = FrameSource::Element;
};

// The frame that is asked for.
struct FrameChoice {
  bool byAxis = false;
  korvex::Vector3 axis{};  // global, any length; without meaning unless byAxis
};

// The sine of the angle between axis and normal up to which the axis counts as normal to the shell:
// 0.06 degrees. Below it, the small errors of a mesh decide where the projection points.
inline constexpr double NormalAxisSine = 1e-3;

// The frame for an element with this own frame. An element without a plane (its frame is NaN) has a
// frame of NaN. Throws a korvex::Stop where the axis has no direction: zero, infinite or NaN.
ShellFrame MakeShellFrame(const korvex::ElementFrame& own, const FrameChoice& choice);

}  // namespace kvx
