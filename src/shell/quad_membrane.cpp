// Order of the sums: xi is the outer loop, eta the inner one; each integration point adds its whole
// product before the next.
#include "shell/quad_membrane.h"

#include <algorithm>
#include <cmath>

#include "shell/part_products.h"

namespace korvex {

namespace {

// The derivatives to xi at eta = -GaussAbscissa and +GaussAbscissa: (1 -+ GaussAbscissa) / 4 to ten
// decimals. These rounded numbers define the integration rule, as the rounded abscissa does.
constexpr double NearQuarter = 0.3943375673;
constexpr double FarQuarter = 0.1056624327;
constexpr std::array<std::array<double, 4>, 2> GaussDerivatives{
    {{-NearQuarter, NearQuarter, FarQuarter, -FarQuarter},
     {-FarQuarter, FarQuarter, NearQuarter, -NearQuarter}}};

}  // namespace

void QuadMembrane::Init() {
  nodes = 4;
  inPlaneDofsPerNode = 2;
  dofsPerNode = 3;
  membraneDofs = 8;
  dofs = 12;
  dimension = 2;
  strains = 3;
}

void QuadMembrane::ShapeDerivatives(double xi, double eta) { BilinearDerivatives(xi, eta, dN); }

void QuadMembrane::Jacobian() { BilinearJacobian(dN, x, y, J, detJ, Jinv, dNdx); }

void QuadMembrane::StrainMatrix() {
  for (std::size_t k = 0; k < 4; ++k) {
    const double dx = dNdx[k];
    const double dy = dNdx[4 + k];
    B[2 * k] = dx, B[2 * k + 1] = 0.0;           // exx = du/dx
    B[8 + 2 * k] = 0.0, B[8 + 2 * k + 1] = dy;   // eyy = dv/dy
    B[16 + 2 * k] = dy, B[16 + 2 * k + 1] = dx;  // gxy = du/dy + dv/dx
  }
}

void QuadMembrane::ElasticityMatrix() { PlaneStressMatrix(E, Mu, D); }

void QuadMembrane::MembraneStiffness(double* out) {
  std::fill(out, out + 64, 0.0);
  ElasticityMatrix();
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      ShapeDerivatives(GaussPoints[i], GaussPoints[j]);
      std::copy(GaussDerivatives[j].begin(), GaussDerivatives[j].end(), dN.begin());
      Jacobian();
      StrainMatrix();
      const double s = std::fabs(detJ) * TK * GaussWeights[i];
      AddStiffnessProduct<3, 8>(B.data(), D.data(), s, out);
    }
  }
}

void QuadMembrane::DrillingStiffness(double* out) {
  const double gamma = DrillingPenalty(E, Mu, TK);
  std::fill(out, out + 144, 0.0);
  std::array<double, 12> b{};
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
      const double s = std::fabs(detJ) * gamma * GaussWeights[i] * GaussWeights[j];
      AddOuterProduct(b.data(), 12, s, out);
    }
  }
}

void QuadMembrane::Stiffness() {
  DrillingStiffness(K.data());
  std::array<double, 64> Km{};
  MembraneStiffness(Km.data());
  AddMembranePart(Km.data(), 4, K.data());
}

}  // namespace korvex
