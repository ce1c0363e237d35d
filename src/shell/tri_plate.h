// The bending part of the three-node element: a discrete Kirchhoff triangle, without shear energy.
//
// Local axes; dofs per node w, rx, ry, right-handed: rx = dw/dy, ry = -dw/dx. The rotations are
// quadratic. Those at the mid-sides follow from the corner dofs by the Kirchhoff condition along
// the edge (Batoz, Bathe & Ho 1980). Integrated at the three mid-side points. The fields are a
// fixed layout; no routine reads the counts.
#pragma once

#include <cstdint>

#include "shell/elasticity.h"
#include "shell/triangle.h"

namespace korvex {

struct TriPlate {
  std::array<double, 3> x{}, y{};      // local node coordinates
  double E = 0.0, Mu = 0.0, TK = 0.0;  // material, thickness
  std::int32_t nodes = 0;              // 3, as all counts set by Init
  std::int32_t dofs = 0;               // 9
  std::array<double, 81> K{};          // 9 x 9: the result of Stiffness

  void Init();                              // sets the counts
  void BendingRigidity(double* out) const;  // out: 3 x 3
  // out: 3 x 9, curvatures kx, ky, kxy from w, rx, ry per node, at the area coordinates L.
  void CurvatureMatrix(const Array3& L, double* out) const;
  void Stiffness();  // K
};

}  // namespace korvex
