// Displacements of chains of beams by the force method, which needs no stiffness matrix.
//
// Unit-load theorem (Timoshenko & Gere 1972, ch. 11): the displacement at a point is the integral
// over the members of the products of the section forces of the real and of a unit load, each over
// its rigidity. The section forces of a chain clamped at its start follow from statics alone; a
// second clamped end adds six redundant forces. Member axes run through the centroids, which rigid
// arms join to the nodes. Simpson's rule integrates products of linear functions exactly. All
// numbers are long double, so that the difference from the solver's result is the solver's error.
#pragma once

#include <array>
#include <vector>

namespace korvex::test {

using Real = long double;
using Real3 = std::array<Real, 3>;
using Real6 = std::array<Real, 6>;  // ux, uy, uz, rx, ry, rz or Fx, Fy, Fz, Mx, My, Mz, global

// The properties of a cross-section in local axes.
struct SectionNumbers {
  Real A = 0, Iy = 0, Iz = 0, J = 0;
  Real shearAreaZ = 0;  // carries the shear of bending in x-z; 0: no shear deformation
  Real shearAreaY = 0;  // carries the shear of bending in x-y; 0: no shear deformation
  Real ey = 0, ez = 0;  // from the node to the centroid
};

// Member i joins point i to point i + 1; point 0 is clamped.
struct BeamChain {
  Real E = 0, Mu = 0;
  std::vector<Real3> points;
  std::vector<Real3> orientations;       // by member; only the part normal to the axis counts
  std::vector<SectionNumbers> sections;  // by member
};

// Displacements of point `at` under `load` at point `loaded`. The last point is free.
Real6 DisplaceCantilever(const BeamChain& chain, int at, int loaded, const Real6& load);

// The same with the last point clamped as well.
Real6 DisplacePortal(const BeamChain& chain, int at, int loaded, const Real6& load);

// Force and moment that the clamp at the last point of that chain exerts on it.
Real6 ClampPortal(const BeamChain& chain, int loaded, const Real6& load);

// Solves A x = b by Gaussian elimination with row exchange.
Real6 SolveSix(std::array<Real6, 6> A, Real6 b);

}  // namespace korvex::test
