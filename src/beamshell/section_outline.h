// The outline of a beam's cross-section: its plates' mid-lines as points and straight segments.
//
// Section axes (those of the beam): x along the beam, y and z across it, z the web direction. The
// origin is the node line. A web stands on it and rises to Hw; where there is a flange, the topmost
// web point lies in the flange's mid-plane at Hw + Tf / 2, so that the topmost web segment is
// longer than the others by Tf / 2. An L flange begins at the web's mid-plane, unlike that of the
// section properties, which begins at the web's outer face: mid-lines have to meet.
//
//   mesh level                          0 (and any other)    1     2
//   divisions of a web, Dw                      3            6    12
//   of each side of a T flange                  1            2     4
//   of an L flange                              1            2     4
//   points of a tube                            8           12    16
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/vector3.h"
#include "beam/beam_element.h"

namespace korvex {

struct OutlineSegment {
  std::array<std::int32_t, 2> points{};  // indices of its ends
  double thickness = 0.0;
};

struct SectionOutline {
  std::vector<Vector3> points;           // section axes, x = 0
  std::vector<OutlineSegment> segments;  // in the order in which their shells are numbered
};

// Each fills `outline` anew, without the offset BeamSecOz. A zero Bf or Tf leaves the web alone.

// Points: web from below, flange from the web to its -y tip, flange from the web to its +y tip.
void BuildTOutline(const BeamSection& section, std::int32_t meshLevel, SectionOutline& outline);

// Points: web from below, flange from the web to its tip, on the +y side or, if mirrored, the -y.
void BuildLOutline(const BeamSection& section, bool mirrored, std::int32_t meshLevel,
                   SectionOutline& outline);

// Points: round the mid-circle from +y towards +z. The last segment closes the ring.
void BuildCOutline(const CBeamSection& section, std::int32_t meshLevel, SectionOutline& outline);

// Moves all points by BeamSecOz along z.
void ShiftOutline(double BeamSecOz, SectionOutline& outline);

// The length of the longest segment; 0 where no length is greater than 0, as with NaNs.
double LongestSegment(const SectionOutline& outline);

}  // namespace korvex
