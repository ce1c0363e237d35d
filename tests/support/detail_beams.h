// Detail models of single beams without a structure around them: tests make them as a run does, and
// read their displacements, nodal forces and stresses.
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

// The beam's detail model, ready to be solved: nodes, shells, links and Tolerance.
BeamShellModel ExtrudeBeam(const DetailBeam& beam);

// The same, written into `model`, which may hold the memory of another model.
void ExtrudeBeam(const DetailBeam& beam, BeamShellModel& model);

// The local axes x, y, z, by their definition: x along the beam, z the normalised part of the
// orientation vector that is normal to x, y = z x x.
std::array<Vector3, 3> LocalAxes(const DetailBeam& beam);

double Dot(const Vector3& a, const Vector3& b);

// a[0] axes[0] + a[1] axes[1] + a[2] axes[2].
Vector3 Combine(const std::array<Vector3, 3>& axes, const Vector3& a);

// The six displacements of a detail model's node.
Six NodeDisplacements(const BeamShellModel& model, std::size_t node);

// By node, global: the sum of the shells' stiffness matrices times the displacements. At the end
// stations it is what the links transfer. The links' own matrices would give rounding errors only:
// 1e20 times the last digits of the displacements.
std::vector<Six> SumShellForces(const BeamShellModel& model);

// The axial stress on a face at a corner of a shell, and the place in section axes: y, z from the
// line between the beam's nodes; sy, sz from the middle of the corner's segment.
struct Reading {
  double stress, y, z, sy, sz;
};

// Both faces of all corners of the shells that touch the beam's mid-length: step by step along the
// beam, segment by segment in the outline's order, corner by corner, the upper face first.
// axes: the beam's local axes.
std::vector<Reading> ReadMiddle(const BeamShellModel& model, const std::array<Vector3, 3>& axes,
                                const SectionOutline& outline);

}  // namespace korvex::test
