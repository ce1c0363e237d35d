// The mass of a model and its centre of gravity, from the densities.
//
// Shells: area times thickness, at the centroid of the area of the real quadrilateral (with node 3
// where it is: two triangles for each diagonal, their mean). Beams: A L at the middle of the line
// through their centroids, which stands off the nodes by the section and its offset, in the beam's
// axes as the solver has them. Overlaps of plates and webs count twice, as in the stiffness.
#pragma once

#include "base/vector3.h"
#include "check/checked_model.h"

namespace kvx {

struct ModelWeight {
  double mass = 0.0;         // density times volume, model units
  korvex::Vector3 centre{};  // zero where the mass is zero
};

// Elements that findings name, or whose material, thickness or section they name, are left out.
ModelWeight WeighModel(const CheckedModel& model);

}  // namespace kvx
