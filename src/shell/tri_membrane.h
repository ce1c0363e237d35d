// The in-plane part of the three-node element: a constant-strain triangle and a drilling-rotation
// penalty.
//
// Local axes; dofs per node u, v, drilling rotation. Membrane: Turner, Clough, Martin & Topp
// (1956). Drilling: as in quad_membrane.h, integrated over four points. The fields are a fixed
// layout; no routine reads the counts.
#pragma once

#include <cstdint>

#include "shell/elasticity.h"
#include "shell/triangle.h"

namespace korvex {

struct TriMembrane {
  std::array<double, 3> x{}, y{};      // local node coordinates
  double E = 0.0, Mu = 0.0, TK = 0.0;  // material, thickness
  std::int32_t nodes = 0;              // 3, as all counts set by Init
  std::int32_t membraneDofs = 0;       // 6
  std::int32_t dofs = 0;               // 9
  std::int32_t strains = 0;            // 3: exx, eyy, gxy
  std::array<double, 81> K{};          // 9 x 9: the result of Stiffness

  void Init();                                // sets the counts
  void StrainMatrix(double* out) const;       // out: 3 x 6, dofs u, v per node
  void ElasticityMatrix(double* out) const;   // out: 3 x 3, plane stress
  void MembraneStiffness(double* out) const;  // out: 6 x 6, dofs u, v per node
  void DrillingStiffness(double* out) const;  // out: 9 x 9, dofs u, v, drilling per node
  void Stiffness();                           // K: both parts together
};

}  // namespace korvex
