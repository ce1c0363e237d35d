// The routines of quad_membrane.h for any kind of number.
//
// Order of the sums: xi is the outer loop, eta the inner one; each integration point adds its whole
// product before the next.
#pragma once

#include <algorithm>
#include <cmath>

#include "shell/quad_membrane.h"

namespace korvex {

// The derivatives to xi at eta = -GaussAbscissa and +GaussAbscissa: (1 -+ GaussAbscissa) / 4 to ten
// decimals. These rounded numbers define the integration rule, as the rounded abscissa does.
inline constexpr double NearQuarter = 0.3943375673;
inline constexpr double FarQuarter = 0.1056624327;
inline constexpr double GaussDerivatives[2][4] = {
    {-NearQuarter, NearQuarter, FarQuarter, -FarQuarter},
    {-FarQuarter, FarQuarter, NearQuarter, -NearQuarter}};

template <typename Number>
void QuadMembraneOf<Number>::Init() {
  nodes = 4;
  inPlaneDofsPerNode = 2;
  dofsPerNode = 3;
  membraneDofs = 8;
  dofs = 12;
  dimension = 2;
  strains = 3;
}

template <typename Number>
void QuadMembraneOf<Number>::ShapeDerivatives(double xi, double eta) {
  BilinearDerivatives(xi, eta, dN);
}

template <typename Number>
void QuadMembraneOf<Number>::Jacobian() {
  BilinearJacobian(dN, x, y, J, detJ, Jinv, dNdx);
}

template <typename Number>
void QuadMembraneOf<Number>::StrainMatrix() {
  for (std::size_t k = 0; k < 4; ++k) {
    const Number dx = dNdx[k];
    const Number dy = dNdx[4 + k];
    B[2 * k] = dx, B[2 * k + 1] = 0.0;           // exx = du/dx
    B[8 + 2 * k] = 0.0, B[8 + 2 * k + 1] = dy;   // eyy = dv/dy
    B[16 + 2 * k] = dy, B[16 + 2 * k + 1] = dx;  // gxy = du/dy + dv/dx
  }
}

template <typename Number>
void QuadMembraneOf<Number>::ElasticityMatrix() {
  PlaneStressMatrix(E, Mu, D);
}

template <typename Number>
template <Extent extent>
void QuadMembraneOf<Number>::MembraneStiffness(Number* out) {
  using std::fabs;
  std::fill(out, out + 64, 0.0);
  ElasticityMatrix();
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      ShapeDerivatives(GaussPoints[i], GaussPoints[j]);
      for (std::size_t k = 0; k < 4; ++k) dN[k] = GaussDerivatives[j][k];
      Jacobian();
      StrainMatrix();
      const Number s = fabs(detJ) * TK * GaussWeights[i];
      AddStiffnessProduct<3, 8, 2, extent>(B.data(), D.data(), s, out);
    }
  }
}

template <typename Number>
template <Extent extent>
void QuadMembraneOf<Number>::DrillingStiffness(Number* out) {
  using std::fabs;
  const Number gamma = DrillingPenalty(E, Mu, TK);
  std::fill(out, out + 144, 0.0);
  std::array<Number, 12> b{};
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      BilinearFunctions(GaussPoints[i], GaussPoints[j], N);
      ShapeDerivatives(GaussPoints[i], GaussPoints[j]);
      Jacobian();
      for (std::size_t k = 0; k < 4; ++k) {
        b[3 * k] = 0.5 * dNdx[4 + k];
        b[3 * k + 1] = -0.5 * dNdx[k];
        b[3 * k + 2] = N[k];
      }
      const Number s = fabs(detJ) * gamma * GaussWeights[i] * GaussWeights[j];
      AddOuterProduct<12, 3, extent>(b.data(), s, out);
    }
  }
}

template <typename Number>
template <Extent extent>
void QuadMembraneOf<Number>::Stiffness() {
  DrillingStiffness<extent>(K.data());
  std::array<Number, 64> Km;
  MembraneStiffness<extent>(Km.data());
  AddMembranePart<4, extent>(Km.data(), K.data());
}

}  // namespace korvex
