// The in-plane part of the four-node element: a bilinear membrane and a drilling-rotation penalty.
//
// Local axes; dofs per node u, v, drilling rotation. Membrane: isoparametric, 2 x 2 points (Bathe
// 1996, sec. 5.3). Drilling: the difference between the drilling rotation and the in-plane rotation
// of the membrane, theta - (dv/dx - du/dy) / 2, is penalised (Hughes & Brezzi 1989). The fields are
// a fixed layout; no routine reads the counts. Number: as in bilinear_map.h; quad_membrane-inl.h
// has the routines, which are compiled for double in quad_membrane.cpp.
#pragma once

#include <cstdint>

#include "shell/bilinear_map.h"
#include "shell/elasticity.h"
#include "shell/part_products.h"

namespace korvex {

template <typename Number>
struct QuadMembraneOf {
  std::array<Number, 4> x{}, y{};       // local node coordinates
  Number E = 0.0, Mu = 0.0, TK = 0.0;   // material, thickness
  std::int32_t nodes = 0;               // 4, as all counts set by Init
  std::int32_t inPlaneDofsPerNode = 0;  // 2: u, v
  std::int32_t dofsPerNode = 0;         // 3: u, v, drilling
  std::int32_t membraneDofs = 0;        // 8
  std::int32_t dofs = 0;                // 12
  std::int32_t dimension = 0;           // 2
  std::int32_t strains = 0;             // 3: exx, eyy, gxy
  std::array<Number, 4> N{};            // shape functions at the current point
  std::array<Number, 8> dN{};           // 2 x 4: d/dxi, d/deta
  std::array<Number, 4> J{};            // 2 x 2
  Number detJ = 0.0;                    // signed
  std::array<Number, 4> Jinv{};         // 2 x 2
  std::array<Number, 8> dNdx{};         // 2 x 4: d/dx, d/dy
  std::array<Number, 24> B{};           // 3 x 8: strains from u, v
  std::array<Number, 9> D{};            // 3 x 3: plane stress
  std::array<Number, 144> K{};          // 12 x 12: the result of Stiffness

  void Init();                                   // sets the counts
  void ShapeDerivatives(double xi, double eta);  // dN
  void Jacobian();                               // J, detJ, Jinv, dNdx from dN, x, y
  void StrainMatrix();                           // B from dNdx
  void ElasticityMatrix();                       // D from E, Mu

  // The parts of K, written where they are formed. out: 8 x 8, dofs u, v per node; or 12 x 12, dofs
  // u, v, drilling per node.
  template <Extent extent = Extent::Whole>
  void MembraneStiffness(Number* out);
  template <Extent extent = Extent::Whole>
  void DrillingStiffness(Number* out);
  template <Extent extent = Extent::Whole>
  void Stiffness();  // K: both parts together
};

extern template struct QuadMembraneOf<double>;
using QuadMembrane = QuadMembraneOf<double>;

}  // namespace korvex
