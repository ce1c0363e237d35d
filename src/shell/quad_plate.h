// The bending part of the four-node element: a shear-deformable plate with assumed shear strains.
//
// Local axes; dofs per node w, rx, ry, right-handed: rx = dw/dy and ry = -dw/dx for a thin plate.
// Bending bilinear, 2 x 2 points. The transverse shear strains are interpolated from the midpoints
// of the edges (after Bathe & Dvorkin 1985, but with the directions of the element's mid-lines at
// every point): this avoids shear locking at full integration. The fields are a fixed layout; no
// routine reads the counts. Number: as in bilinear_map.h; quad_plate-inl.h has the routines, which
// are compiled for double in quad_plate.cpp.
#pragma once

#include <cstdint>

#include "shell/bilinear_map.h"
#include "shell/elasticity.h"
#include "shell/part_products.h"

namespace korvex {

template <typename Number>
struct QuadPlateOf {
  std::array<Number, 4> x{}, y{};      // local node coordinates
  Number E = 0.0, Mu = 0.0, TK = 0.0;  // material, thickness
  std::int32_t nodes = 0;              // 4, as all counts set by Init
  std::int32_t dofsPerNode = 0;        // 3: w, rx, ry
  std::int32_t dimension = 0;          // 2
  std::int32_t curvatures = 0;         // 3: kx, ky, kxy
  std::int32_t dofs = 0;               // 12
  std::array<Number, 4> N{};           // shape functions at the current point
  std::array<Number, 8> dN{};          // 2 x 4: d/dxi, d/deta
  std::array<Number, 4> J{};           // 2 x 2
  Number detJ = 0.0;                   // signed
  std::array<Number, 4> Jinv{};        // 2 x 2
  std::array<Number, 8> dNdx{};        // 2 x 4: d/dx, d/dy
  std::array<Number, 36> Bb{};         // 3 x 12: curvatures kx, ky, kxy
  std::array<Number, 24> Bs{};         // 2 x 12: shear strains gxz, gyz
  std::array<Number, 9> Db{};          // 3 x 3: bending rigidity
  std::array<Number, 4> Ds{};          // 2 x 2: shear rigidity
  std::array<Number, 144> K{};         // 12 x 12: the result of Stiffness

  void Init();                                 // sets the counts
  void ShapeFunctions(double xi, double eta);  // N, dN
  void Jacobian();                             // J, detJ, Jinv, dNdx from dN, x, y
  void CurvatureMatrix();                      // Bb from dNdx
  void BendingRigidity();                      // Db from E, Mu, TK
  // Bs at (xi, eta); detJPoint: the Jacobian determinant there.
  void ShearStrainMatrix(Number detJPoint, double xi, double eta);
  template <Extent extent = Extent::Whole>
  void Stiffness();  // Db, Ds, K
};

extern template struct QuadPlateOf<double>;
using QuadPlate = QuadPlateOf<double>;

// G TK is divided by this: the shear correction factor 5/6.
inline constexpr double ShearCorrectionDivisor = 1.2;

}  // namespace korvex
