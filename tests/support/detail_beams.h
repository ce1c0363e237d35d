// Detail models of single beams for tests: described and extruded as a run does it, yet without a
// structure around them; their sections' thin-walled numbers; and what their shells carry.
#pragma once

#include <string>
#include <vector>

#include "beamshell/section_outline.h"
#include "model/beam_shell_model.h"
#include "support/beam_sections.h"

namespace korvex::test {

using Six = std::array<double, 6>;  // ux, uy, uz, rx, ry, rz or Fx, Fy, Fz, Mx, My, Mz, global

struct DetailBeam {
  TestSection section;
  Vector3 end1{}, end2{}, orientation{};
  double E = 0.0, Mu = 0.0;
  std::int32_t meshLevel = 0;
};

// The section's outline with its offset.
SectionOutline BuildOutline(const TestSection& section, std::int32_t meshLevel);

// The beam's detail model with nodes, shells and links, Tolerance included: ready to be solved.
BeamShellModel ExtrudeBeam(const DetailBeam& beam);

// The same into `model`, which may hold the memory of another.
void ExtrudeBeam(const DetailBeam& beam, BeamShellModel& model);

// Local axes by rows x, y, z, from the rule itself: z is the orientation vector less its part along
// the axis, y = z x x.
std::array<Vector3, 3> LocalAxes(const DetailBeam& beam);

double Dot(const Vector3& a, const Vector3& b);

// a[0] axes[0] + a[1] axes[1] + a[2] axes[2].
Vector3 Combine(const std::array<Vector3, 3>& axes, const Vector3& a);

// The six displacements of a detail model's node.
Six NodeDisplacements(const BeamShellModel& model, std::size_t node);

// What all shells at each node exert on it, global: their stiffnesses times the displacements. At
// the end stations it is what the links bring in; the links' own product would be rounding alone,
// 1e20 times the last digits of the displacements.
std::vector<Six> SumShellForces(const BeamShellModel& model);

// The axial stress on a face at a corner of a shell, and where: y, z from the node line, in section
// axes; sy, sz from the middle of the corner's segment.
struct Reading {
  double stress, y, z, sy, sz;
};

// All faces of all corners of the shells that reach the beam's middle: station by station, segment
// by segment in the outline's order, corner by corner, the upper face first.
// axes: the beam's local axes.
std::vector<Reading> ReadMiddle(const BeamShellModel& model, const std::array<Vector3, 3>& axes,
                                const SectionOutline& outline);

}  // namespace korvex::test
