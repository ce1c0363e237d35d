// The stresses of a four-node element at a point, on both faces, for any kind of number. What they
// are: results/corner_stress.h.
#pragma once

#include <algorithm>
#include <array>

#include "shell/element_parts.h"
#include "shell/quad_membrane.h"
#include "shell/quad_plate.h"

namespace korvex {

template <typename Number>
using StressOf = std::array<Number, 6>;  // SX, SY, SZ, TXY, TXZ, TYZ
template <typename Number>
using PlaneOf = std::array<Number, 3>;  // components x, y, xy

// The element's displacements in local axes, separated into the dofs of its two parts.
template <std::int32_t Nodes, typename Number>
struct LocalDisplacements {
  std::array<Number, static_cast<std::size_t>(Nodes) * 2> membrane{};  // u, v per node
  std::array<Number, static_cast<std::size_t>(Nodes) * 3> plate{};     // w, rx, ry per node
};

// displacements: 6 * Nodes, global, element dof order. The drilling rotations are left out: they do
// not enter the stresses.
template <std::int32_t Nodes, typename Number>
inline void SortDisplacements(const FrameOf<Number>& frame, const Number* displacements,
                              LocalDisplacements<Nodes, Number>& d) {
  std::array<Number, static_cast<std::size_t>(Nodes) * 6> local{};
  std::copy(displacements, displacements + local.size(), local.begin());
  RotateVectorToLocal(frame, Nodes, local.data());
  for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
    std::copy_n(&local[6 * k], 2, &d.membrane[2 * k]);
    std::copy_n(&local[6 * k + 2], 3, &d.plate[3 * k]);
  }
}

// Returns D (B d). D: 3 x 3; B: 3 x n; d: n.
template <typename Number>
inline PlaneOf<Number> MultiplyThrough(const Number* D, const Number* B, const Number* d,
                                       std::int32_t n) {
  PlaneOf<Number> Bd{}, DBd{};
  MatMultiply(Bd.data(), B, d, 3, n, 1);
  MatMultiply(DBd.data(), D, Bd.data(), 3, 3, 1);
  return DBd;
}

// Returns R sigma R^T, the stress `local` (SX .. TYZ in the local axes) in global axes. R is the
// frame: its columns are the local axes.
template <typename Number>
inline StressOf<Number> RotateStress(const FrameOf<Number>& frame, const StressOf<Number>& local) {
  const Number* l = &frame[0];
  const Number* m = &frame[3];
  const Number* n = &frame[6];
  const Number sx = local[0], sy = local[1], sz = local[2];
  const Number txy = local[3], txz = local[4], tyz = local[5];
  const auto normal = [&](const Number* a) {
    return a[0] * a[0] * sx + a[1] * a[1] * sy + a[2] * a[2] * sz + 2.0 * a[0] * a[1] * txy +
           2.0 * a[0] * a[2] * txz + 2.0 * a[1] * a[2] * tyz;
  };
  const auto shear = [&](const Number* a, const Number* b) {
    return a[0] * b[0] * sx + a[1] * b[1] * sy + a[2] * b[2] * sz +
           (a[0] * b[1] + a[1] * b[0]) * txy + (a[0] * b[2] + a[2] * b[0]) * txz +
           (a[1] * b[2] + a[2] * b[1]) * tyz;
  };
  return {normal(l), normal(m), normal(n), shear(l, m), shear(l, n), shear(m, n)};
}

// top, bottom: the stresses of both faces, global, from the membrane stresses and the moments per
// length, both local.
template <typename Number>
inline void FormFaces(const FrameOf<Number>& frame, Number TK, const PlaneOf<Number>& membrane,
                      const PlaneOf<Number>& moment, StressOf<Number>& top,
                      StressOf<Number>& bottom) {
  const Number factor = 6.0 / TK / TK;
  StressOf<Number> upper{}, lower{};
  constexpr std::size_t slot[3] = {0, 1, 3};  // positions of SX, SY, TXY
  for (std::size_t i = 0; i < 3; ++i) {
    upper[slot[i]] = membrane[i] + factor * moment[i];
    lower[slot[i]] = membrane[i] - factor * moment[i];
  }
  top = RotateStress(frame, upper);
  bottom = RotateStress(frame, lower);
}

// What the stresses at all points of a four-node element have in common.
template <typename Number>
struct ShellStressTerms {
  LocalDisplacements<4, Number> d;
  QuadMembraneOf<Number> membrane;  // with its elasticity matrix
  QuadPlateOf<Number> plate;        // with its bending rigidity
};

// Element: as for SetUpPart; displacements: 24, global, element dof order.
template <typename Element, typename Number>
inline void SetUpTerms(const Element& element, const Number* displacements,
                       ShellStressTerms<Number>& terms) {
  SortDisplacements(element.Frame, displacements, terms.d);
  SetUpPart<4>(element, terms.membrane);
  terms.membrane.ElasticityMatrix();
  SetUpPart<4>(element, terms.plate);
  terms.plate.BendingRigidity();
}

// The stresses of the element at (xi, eta). top, bottom: as for Shell4CornerStress
// (results/corner_stress.h).
template <typename Element, typename Number>
inline void FormShell4Stress(const Element& element, ShellStressTerms<Number>& terms, double xi,
                             double eta, StressOf<Number>& top, StressOf<Number>& bottom) {
  QuadMembraneOf<Number>& membrane = terms.membrane;
  membrane.ShapeDerivatives(xi, eta);
  membrane.Jacobian();
  membrane.StrainMatrix();

  QuadPlateOf<Number>& plate = terms.plate;
  plate.ShapeFunctions(xi, eta);
  plate.Jacobian();
  plate.CurvatureMatrix();

  FormFaces(element.Frame, element.TK,
            MultiplyThrough(membrane.D.data(), membrane.B.data(), terms.d.membrane.data(), 8),
            MultiplyThrough(plate.Db.data(), plate.Bb.data(), terms.d.plate.data(), 12), top,
            bottom);
}

}  // namespace korvex
