// Loads of other formats as rows that the model file has: pressures along a shell's normal that are
// linear over it, line loads along a beam's local z that are linear over its length, forces and
// moments at nodes. What has no such row becomes the consistent nodal forces of the element.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/vector3.h"
#include "mesh/import_model.h"

namespace kvx {

// Adds a pressure along the shell's e3, positive towards it. q: values at its corners (the fourth
// is ignored for triangles). A quadrilateral's values that lie in no plane are split: the plane
// through the corners 1, 2, 3 is a row, what remains at corner 4 becomes forces along e3, N4 times
// it integrated with the bilinear functions; so the total force and its moments are those of the
// deck. Where the corners 1, 2, 3 lie on a line all of it becomes forces. A warped quadrilateral is
// taken as the solver takes it: in the plane of its corners 1, 2, 4.
void AddPressure(const ImportModel& model, std::int32_t shell, const std::array<double, 4>& q,
                 ImportCase& loads);

// The value at corner 4 that the solver gives a pressure: that of the plane through the other
// three. Where these lie on a line q1 - q2 + q3.
double PressureAtCorner4(const ImportModel& model, const ImportPressure& pressure);

// Adds a load on the shell's face along `direction` (global, length 1), force per true area of the
// shell: consistent nodal forces of the bilinear or linear functions (2 x 2 Gauss points; exact for
// a triangle).
void AddTraction(const ImportModel& model, std::int32_t shell, const std::array<double, 4>& q,
                 const korvex::Vector3& direction, ImportCase& loads);

// A load on a part of a beam.
struct BeamSpanLoad {
  std::int32_t beam = -1;
  korvex::Vector3 direction{};    // global, length 1
  bool isMoment = false;          // moment instead of force
  double from = 0.0, to = 1.0;    // parts of the beam's length; equal: a single force or moment
  double qFrom = 0.0, qTo = 0.0;  // per length; for from == to: qFrom is the force or moment
};

// Adds it. What acts along +-z over the whole length is a row; all else becomes the consistent
// forces and moments at both nodes (cubic functions across the axis, linear ones along it and for
// the twist): the displacements of the nodes are those of the load, but between them section forces
// do not know it. Returns whether all of it is a row. 0 <= from <= to <= 1. Without an orientation
// there is no row; a beam of zero length gets nothing.
bool AddBeamLoad(const ImportModel& model, const BeamSpanLoad& load, ImportCase& loads);

// The beam's local axes: x, y, z. Without an orientation, or with one along the axis, y and z are
// 0; without a length x is 0, too.
std::array<korvex::Vector3, 3> BeamAxes(const ImportModel& model, const ImportBeam& beam);

}  // namespace kvx
