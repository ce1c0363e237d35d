// The outline of a beam's cross-section: the mid-lines of its plates as points and straight
// segments.
//
// Section axes (those of the beam): x along the beam, y and z across it, z the web direction. The
// origin is the node line; a web reaches from there to z = Hw. With a flange, the topmost web point
// is in the flange's mid-plane at Hw + Tf / 2, so the topmost web segment is longer by Tf / 2 than
// the others. An L flange begins at the web's mid-plane, because the mid-lines must meet; in the
// section properties it begins at the web's face.
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

// The next three routines replace the contents of `outline`. They do not apply the offset
// BeamSecOz. With Bf = 0 or Tf = 0 the outline is that of the web. meshLevel: as in the table
// above.

// T section. Points: web from below, flange from the web to its -y tip, flange from the web to its
// +y tip.
void BuildTOutline(const BeamSection& section, std::int32_t meshLevel, SectionOutline& outline);

// L section. Points: web from below, flange from the web to its tip, which is on the +y side, or on
// the -y side if mirrored.
void BuildLOutline(const BeamSection& section, bool mirrored, std::int32_t meshLevel,
                   SectionOutline& outline);

// Tube. Points: on the mid-circle from +y towards +z. The last segment closes the ring.
void BuildCOutline(const CBeamSection& section, std::int32_t meshLevel, SectionOutline& outline);

// Moves all points by BeamSecOz along z.
void ShiftOutline(double BeamSecOz, SectionOutline& outline);

// Returns the length of the longest segment; 0 if no length is greater than 0, as with NaNs.
double LongestSegment(const SectionOutline& outline);

}  // namespace korvex
